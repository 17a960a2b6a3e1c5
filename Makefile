# Two commands for a fresh machine: `make run` and `make test`. Each installs what is missing, builds, and runs.

JOBS ?= $(shell getconf _NPROCESSORS_ONLN)
ARGS ?=
SECONDS_EACH ?= 600
MIRVEL_SOAK ?= 1

.PHONY: run demo screenshots test soak asan core check bench fuzz install deb clean

run:
	scripts/dependencies build
	scripts/build release -j$(JOBS)
	scripts/run mirvel $(ARGS)

demo:
	scripts/dependencies build
	scripts/build release -j$(JOBS)
	scripts/run mirvel-demo $(ARGS)

screenshots:
	scripts/dependencies build
	scripts/build release -j$(JOBS)
	scripts/screenshots

test:
	scripts/dependencies build test bench fuzz
	scripts/build dev -j$(JOBS)
	scripts/build fuzz -j$(JOBS)
	ctest --preset fuzz
	ctest --preset dev

# The long versions of the tests that race, kill, and wait for a minute.
soak:
	scripts/dependencies build test bench
	scripts/build dev -j$(JOBS)
	MIRVEL_SOAK=$(MIRVEL_SOAK) build/dev/tests/helpers/mirvel_helpers_tests
	MIRVEL_SOAK=$(MIRVEL_SOAK) build/dev/tests/ui/mirvel_ui_tests --gtest_filter='CreationTest.*:JobSheetsTest.*'

asan core:
	scripts/dependencies build test
	scripts/build $@ -j$(JOBS)
	ctest --preset $@

check:
	scripts/dependencies build test bench check
	scripts/check

bench:
	scripts/dependencies build bench
	scripts/build bench -j$(JOBS)
	scripts/bench

fuzz:
	scripts/dependencies build fuzz
	scripts/build fuzz -j$(JOBS)
	scripts/fuzz $(SECONDS_EACH)

install:
	scripts/dependencies build
	scripts/build release -j$(JOBS)
	umask 022 && cmake --install build/release $(if $(PREFIX),--prefix "$(PREFIX)")

deb:
	scripts/dependencies build package
	scripts/build package -j$(JOBS)
	umask 022 && cd build/package && cpack

clean:
	rm -rf build
