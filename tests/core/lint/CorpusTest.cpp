#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "core/lint/LintedJob.h"
#include "support/TestData.h"

/// Published job files, each looked at by a person before its verdict was written down here.
namespace mirvel::lint {
namespace {

struct ExpectedError {
  std::size_t line;
  std::string text;  ///< with the key path, without the place
};

struct Verdict {
  std::string file;
  std::size_t warnings;
  std::vector<ExpectedError> errors;
};

// clang-format off
const std::vector<Verdict> verdicts = {
    {"002-APP_NAME.plist", 0, {{12, R"(<integer> holds `${APP_INTERVAL_SEC}`, which is no number)"}}},
    {"003-audio.lidarr.lidarr.plist", 0, {}},
    {"004-backup.plist", 2, {}},
    {"005-backup.plist", 2, {}},
    {"006-cc.bracken.Uncarbon.helper.plist", 2, {}},
    {"025-com.apple.bootpd.plist", 2, {}},
    {"028-com.apple.bsd.SMJobBlessHelper.plist", 1, {}},
    {"035-com.apple.configd.plist", 0, {}},
    {"050-com.apple.diskarbitrationd.plist", 0, {{7, R"(`#` stands where a tag was expected)"}}},
    {"053-com.apple.dts.SampleD.plist", 1, {}},
    {"058-com.apple.FileSyncAgent.sshd.plist", 2, {}},
    {"062-com.apple.getty.plist", 0, {{21, R"(LimitLoadToHardware.serialdebugmode[0]: holds 1, an integer, where a string belongs)"}}},
    {"063-com.apple.getty.plist", 0, {}},
    {"064-com.apple.gkreport.plist", 1, {}},
    {"069-com.apple.hidd.plist", 1, {}},
    {"070-com.apple.hidd.plist", 1, {}},
    {"075-com.apple.ioupsd.plist", 0, {}},
    {"076-com.apple.kdumpd.plist", 1, {}},
    {"077-com.apple.Kerberos.kdc.plist", 0, {}},
    {"078-com.apple.kextd.plist", 0, {{33, R"(LimitLoadToHardware.use_kernelmanagerd[0]: holds 0, an integer, where a string belongs)"}}},
    {"080-com.apple.launchd_helperd.plist", 4, {}},
    {"081-com.apple.launchd_helperd.plist", 3, {}},
    {"087-com.apple.mDNSResponder.plist", 1, {}},
    {"089-com.apple.mDNSResponder.reloaded.plist", 0, {{17, R"(<array> stands in a <dict> where <key> was expected)"}}},
    {"114-com.apple.postfix.master.plist", 0, {}},
    {"133-com.apple.secd.plist", 0, {}},
    {"141-com.apple.securityd.plist", 0, {{15, R"(GroupName: holds a dictionary of 2 where a string belongs)"}, {49, R"(UserName: holds a dictionary of 3 where a string belongs)"}}},
    {"142-com.apple.securityd.system.plist", 0, {{40, R"(Disabled: holds a dictionary of 2 where a boolean belongs)"}}},
    {"157-com.apple.SystemStarter.plist", 1, {}},
    {"158-com.apple.SystemStarter.plist", 2, {}},
    {"161-com.apple.telnetd.plist", 2, {}},
    {"162-com.apple.telnetd.plist", 2, {}},
    {"169-com.apple.trustd.plist", 0, {}},
    {"170-com.apple.trustd.plist", 0, {}},
    {"188-com.archinwaterworks.src.brew.plist", 0, {}},
    {"189-com.atomicredteam.t1543_001.plist", 2, {}},
    {"190-com.bareos.bareos-fd.plist", 2, {}},
    {"192-com.boxen.nginx.plist.erb.plist", 0, {{6, R"(<String> is no element of a property list)"}}},
    {"194-com.carriez.RustDesk_server.plist", 0, {}},
    {"196-com.company.xprotect_re-enable_adobe_flash.plist", 1, {}},
    {"197-com.company.xprotect_re-enable_java_6_and_7.plist", 1, {}},
    {"199-com.davidwernhart.Helper.plist", 1, {}},
    {"200-com.devework.onnetworkchange.plist", 0, {}},
    {"201-com.donebysimon.timemachine-mount-run-unmount.plist", 0, {}},
    {"202-com.duplicati.server.launchagent.plist", 1, {}},
    {"203-com.elegantchaos.helper.helper.plist", 1, {}},
    {"205-com.example.barebones.server.plist", 0, {}},
    {"207-com.example.label.plist", 0, {{48, R"(<integer> stands in a <dict> where <key> was expected)"}}},
    {"208-com.example.myscript.plist", 0, {{1, R"(an XML property list can't start with `?`)"}}},
    {"213-com.github.lancethomps._LAUNCHD_SCRIPT_ID_.plist", 4, {}},
    {"214-com.github.lancethomps._LAUNCHD_SCRIPT_ID_.plist", 0, {{16, R"(<integer> holds `${START_INTERVAL}`, which is no number)"}}},
    {"215-com.github.loceee.synccdps.plist", 1, {}},
    {"217-com.github.macadmins.Nudge.SMAppService.plist", 0, {}},
    {"219-com.github.morpheus65535.bazarr.plist", 0, {}},
    {"220-com.github.outset.cleanup.plist", 1, {}},
    {"222-com.google.santa.plist", 0, {}},
    {"223-com.google.santa.metricservice.plist", 0, {}},
    {"224-com.googlecode.munki.app_usage_monitor.plist", 0, {}},
    {"227-com.googlecode.munki.managedsoftwareupdate-check.plist", 0, {}},
    {"228-com.googlecode.munki.managedsoftwareupdate-install.plist", 0, {}},
    {"232-com.junwei.hello.plist", 1, {}},
    {"235-com.koekeishiya.yabai.plist", 0, {}},
    {"237-com.logitech.LogiRightSight.Agent.plist", 1, {}},
    {"240-com.moltbb.run.plist", 2, {}},
    {"241-com.nightwind.microinjector_inject_launchd.plist", 0, {}},
    {"242-com.noraworld.ZennPreview.plist", 0, {}},
    {"243-com.northpolesec.santa.migration.plist", 0, {}},
    {"245-com.objective-see.blockblock.plist", 1, {}},
    {"248-com.opa334.Dopamine.startup.plist", 1, {}},
    {"249-com.openssh.autosshd.plist", 0, {}},
    {"250-com.openssh.sshd.plist", 1, {}},
    {"251-com.openssh.sshd.plist", 1, {}},
    {"255-com.plisterine.set_brightness.plist", 0, {}},
    {"256-com.pritunl.service.plist", 0, {}},
    {"257-com.redhat.spice.vdagentd.plist", 0, {}},
    {"258-com.salopensource.sal.random.runner.plist", 0, {}},
    {"260-com.shinokada.covid19.plist", 0, {}},
    {"261-com.softwarefromspace.tt404ipfw.plist", 1, {}},
    {"264-com.staticfloat._service_name.plist", 4, {}},
    {"265-com.takumakei.example1.plist", 0, {}},
    {"267-com.the-wabe.launchd-test.plist", 0, {}},
    {"269-com.user.backup.alpha.plist", 1, {}},
    {"272-com.user.brew-audit.plist", 4, {}},
    {"273-com.user.loginscript.plist", 0, {}},
    {"274-com.user.loginscript.plist", 0, {}},
    {"277-com.vix.cron.plist", 0, {}},
    {"281-corp.sap.privileges.helper.plist", 0, {}},
    {"283-cron_gosoundtransit.plist", 2, {}},
    {"284-cron_gosoundtransit.plist", 2, {}},
    {"286-cx.pow.firewall.plist", 0, {{11, R"(something else stands where </string> was expected)"}}},
    {"290-dev.nginx.plist", 0, {{16, R"(something else stands where </string> was expected)"}}},
    {"291-Directory_Sync.plist", 3, {}},
    {"292-DirectorySync.plist", 3, {}},
    {"297-environment.plist", 0, {{33, R"(`&` opens no reference that property lists know; a plain one is written `&amp;`)"}}},
    {"303-homebrew.mxcl.mongodb.plist", 0, {}},
    {"304-homebrew.mxcl.mysql.plist", 0, {}},
    {"305-homebrew.mxcl.nginx.plist", 0, {}},
    {"308-io.macadmins.Outset.boot.plist", 0, {{6, R"(Program: holds an array of 1 where a string belongs)"}}},
    {"311-io.macadmins.Outset.login.plist", 0, {}},
    {"314-io.macadmins.Outset.on-demand.plist", 1, {}},
    {"315-io.macadmins.Outset.on-demand-privileged.plist", 1, {{6, R"(Program: holds an array of 1 where a string belongs)"}}},
    {"321-LABEL.plist", 5, {}},
    {"324-launchd.createFolder.plist", 1, {}},
    {"325-launchd.runScript.plist", 1, {}},
    {"329-limit.maxfiles.plist", 2, {}},
    {"330-limit.maxfiles.plist", 2, {}},
    {"331-limit.maxproc.plist", 2, {}},
    {"332-limit.maxproc.plist", 2, {}},
    {"333-local.autoupdate.plist", 3, {}},
    {"334-local.clean.trash.plist", 3, {}},
    {"336-local.kbd-layout.plist", 1, {}},
    {"337-local.kbd-layout.plist", 1, {}},
    {"338-local.method1.ssh-agent.plist", 0, {}},
    {"339-local.purgecompletedreminders.plist", 2, {}},
    {"340-local.purgecompletedreminders.plist", 2, {}},
    {"343-mouse.fix.helper.plist", 1, {}},
    {"345-net.laravelnfsw.server.plist", 2, {}},
    {"347-net.sourceforge.buildbot.worker.plist", 0, {}},
    {"348-net.tunnelblick.openvpn.process-network-changes.plist", 0, {}},
    {"350-nginx.plist", 1, {}},
    {"351-nl.root3.support.plist", 0, {}},
    {"352-org.apache.couchdb.plist", 3, {}},
    {"359-org.fuse4x.autoupdater.plist", 0, {}},
    {"361-org.gnu.inetutils.rshd.plist", 2, {}},
    {"367-org.isc.named.plist", 2, {}},
    {"368-org.jenkins-ci.plist", 6, {}},
    {"370-org.openldap.slapd.plist", 0, {}},
    {"372-org.openzfsonosx.zconfigd.plist", 1, {}},
    {"373-org.pqrs.service.agent.Karabiner-Console-User-Server.plist", 0, {}},
    {"374-org.privoxy.launchd.privoxy.plist", 0, {}},
    {"375-org.samba.nmbd.plist", 1, {}},
    {"381-org.tigris.subversion.svnserve.plist", 1, {}},
    {"383-osx-launchd-env.plist", 1, {}},
    {"386-se.tobbe.check-web.plist", 2, {{27, R"(the file holds "WorkingDirectory", a string, where a dictionary belongs)"}}},
    {"387-se.tobbe.check-web.plist", 0, {}},
    {"389-startup.plist", 0, {{33, R"(`&` opens no reference that property lists know; a plain one is written `&amp;`)"}}},
    {"391-tobbe.check-web.plist", 0, {}},
    {"394-uk.co.e26.memcached.plist", 0, {}},
    {"395-uk.org.thekelleys.dnsmasq.plist", 0, {}},
    {"397-Wacom_IOManager.plist", 1, {}},
    {"398-yggdrasil.plist", 1, {}},
};
// clang-format on

std::vector<Finding> lintFile(const std::filesystem::path& file) {
  return lint(testdata::bytes(file), {.exists = [](const std::string&) { return true; }});
}

std::string textWithoutPlace(const Finding& finding) {
  return finding.keyPath.empty() ? finding.message : finding.keyPath + ": " + finding.message;
}

std::string all(const std::vector<Finding>& findings) {
  std::string result;
  for (const Finding& finding : findings) result += finding.text() + '\n';
  return result;
}

void expect(const Verdict& verdict, const std::vector<Finding>& findings) {
  std::vector<Finding> errors;
  std::copy_if(findings.begin(), findings.end(), std::back_inserter(errors),
               [](const Finding& finding) { return finding.severity == Severity::error; });
  EXPECT_EQ(findings.size() - errors.size(), verdict.warnings) << verdict.file << '\n' << all(findings);
  ASSERT_EQ(errors.size(), verdict.errors.size()) << verdict.file << '\n' << all(findings);
  for (std::size_t i = 0; i < errors.size(); ++i) {
    EXPECT_EQ(textWithoutPlace(errors[i]), verdict.errors[i].text) << verdict.file;
    EXPECT_EQ(errors[i].line, verdict.errors[i].line) << verdict.file;
  }
}

TEST(CorpusTest, EveryFileHasItsVerdict) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  for (const Verdict& verdict : verdicts) expect(verdict, lintFile(corpus / verdict.file));
  EXPECT_EQ(testdata::files(corpus, ".plist").size(), verdicts.size()) << "a file has no verdict";
}

TEST(CorpusTest, WarningsTellWhatAPersonWouldTell) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  const struct {
    const char* file;
    const char* text;
  } table[] = {
      {"006-cc.bracken.Uncarbon.helper.plist",
       "warning: line 7, column 2: StandardOutputPath: unknown key; did you mean StandardOutPath?"},
      {"064-com.apple.gkreport.plist",
       "warning: line 15, column 3: StartCalendarInterval.WeekDay: unknown key; did you mean "
       "Weekday?"},
      {"202-com.duplicati.server.launchagent.plist",
       "warning: line 4, column 1: nothing in the file ever starts the job; it runs only when it is started by hand"},
      {"215-com.github.loceee.synccdps.plist",
       "warning: line 2, column 1: the identifiers of the DOCTYPE need quotes; macOS reads such a file, other programs "
       "may not"},
      {"240-com.moltbb.run.plist", "warning: line 10, column 29: StandardOutPath: launchd doesn't expand ~"},
      {"333-local.autoupdate.plist",
       "warning: line 25, column 3: StartCalendarInterval[0]: without Minute the job is started every minute of that "
       "hour"},
      {"339-local.purgecompletedreminders.plist",
       "warning: line 21, column 3: StartCalendarInterval[0]: without Hour and Minute the job is started every minute "
       "of "
       "that day"},
      {"350-nginx.plist",
       "warning: line 9, column 2: NetworkState: unknown key at this place; it belongs in KeepAlive"},
      {"386-se.tobbe.check-web.plist",
       "warning: line 27, column 5: <key> stands where a value belongs, and is read as a string"},
  };
  for (const auto& row : table) {
    EXPECT_NE(all(lintFile(corpus / row.file)).find(row.text), std::string::npos) << row.file << '\n'
                                                                                  << all(lintFile(corpus / row.file));
  }
}

}  // namespace
}  // namespace mirvel::lint
