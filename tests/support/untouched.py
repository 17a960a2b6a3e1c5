#!/usr/bin/env python3
"""Compares property lists before and after an edit with the reader of Python's standard library.

The input file is a sequence of cases. Each consists of a line with the name, the edited keys and the sizes of both lists,
separated by tabs, and of the bytes of both lists. The keys are separated by bars: a key alone allows any change of its
value, `Key:Entry` a change of the entries of this name anywhere below the key, and `Key[1,4]+2` that elements 1 and 4
of an array (or of a dictionary that counts as the only element) were removed and two were added, the others being
unchanged and in the same order. Prints one line for each unexpected difference, and one for each case without the
expected change.
"""

import plistlib
import re
import sys


def load(data):
    """Reads a list. Python is stricter than macOS about the root tag and what precedes it, so both are replaced."""
    try:
        return plistlib.loads(data)
    except Exception:
        root = data.find(b"<plist")
        if root < 0:
            raise
        return plistlib.loads(b"<plist>" + data[data.index(b">", root) + 1 :])


def differences(before, after, path=()):
    if type(before) is dict and type(after) is dict:
        for key in sorted(before.keys() | after.keys()):
            if key in before and key in after:
                yield from differences(before[key], after[key], path + (key,))
            else:
                yield path + (key,)
    elif type(before) is list and type(after) is list and len(before) == len(after):
        for index, (old, new) in enumerate(zip(before, after)):
            yield from differences(old, new, path + (index,))
    elif type(before) is not type(after) or repr(before) != repr(after):
        yield path


def elements(value):
    return value if type(value) is list else [value]


def keeps_elements(before, after, gone, added):
    """Whether the remaining elements are the expected ones."""
    kept = [element for index, element in enumerate(elements(before)) if index not in gone]
    now = elements(after) if after is not None else []
    found = 0
    for element in now:
        if found < len(kept) and next(differences(kept[found], element), None) is None:
            found += 1
    return found == len(kept) and len(now) == len(kept) + added


def is_allowed(path, edited, before, after):
    for key in edited:
        if counts := re.fullmatch(r"(\w+)\[([\d,]*)\]\+(\d+)", key):
            owner, gone, added = counts.groups()
            gone = {int(index) for index in gone.split(",") if index}
            if path[0] == owner and keeps_elements(before.get(owner, []), after.get(owner), gone, int(added)):
                return True
            continue
        owner, _, entry = key.partition(":")
        if path[0] != owner:
            continue
        # If no value existed that could contain the entry, the whole value is new.
        is_new = len(path) == 1 and type(before.get(owner)) is not type(after.get(owner))
        if not entry or path[-1] == entry or is_new:
            return True
    return False


def cases(stream):
    while line := stream.readline():
        name, edited, before, after = line.decode().rstrip("\n").split("\t")
        yield name, edited.split("|"), stream.read(int(before)), stream.read(int(after))


def check(name, edited, before, after):
    try:
        before = load(before)
    except Exception as error:
        return [f"{name}: not read: {error}"]
    try:
        after = load(after)
        found = list(differences(before, after))
    except Exception as error:
        return [f"{name}: {'|'.join(edited)}: what was saved isn't read: {error}"]
    complaints = [path for path in found if not is_allowed(path, edited, before, after)]
    if edited != [""] and len(found) == len(complaints):
        complaints.append("nothing was changed")
    return [f"{name}: {'|'.join(edited)}: {complaint}" for complaint in complaints]


def main():
    with open(sys.argv[1], "rb") as stream:
        for case in cases(stream):
            for line in check(*case):
                print(line)


if __name__ == "__main__":
    main()
