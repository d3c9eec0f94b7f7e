#include "Tests/Mac/Install/PlayedMac.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Machines/Common/Processes/ChildProcess.h"

namespace brivane {
namespace {

namespace files = std::filesystem;

/// Each is a link to Tests/Mac/Install/stand-in.
const std::vector<std::string> standIns = {"cmake",
                                           "codesign",
                                           "defaults",
                                           "ditto",
                                           "hidutil",
                                           "id",
                                           "launchctl",
                                           "log",
                                           "mkdir",
                                           "mv",
                                           "ninja",
                                           "open",
                                           "osascript",
                                           "pgrep",
                                           "pkill",
                                           "plutil",
                                           "rm",
                                           "rmdir",
                                           "screencapture",
                                           "shasum",
                                           "sleep",
                                           "spctl",
                                           "strip",
                                           "sw_vers",
                                           "sysctl",
                                           "system_profiler",
                                           "tccutil",
                                           "uname",
                                           "xattr",
                                           "xcrun"};
/// Besides, nothing else that this machine happens to have.
const std::vector<std::string> commonTools = {"basename", "cat",  "cmp", "cp",  "date", "dirname",
                                              "find",     "grep", "sed", "tee", "tr"};

std::vector<std::string> linesOf(const files::path& file) {
  std::ifstream stream(file);
  std::vector<std::string> found;
  for (std::string line; std::getline(stream, line);) found.push_back(line);
  return found;
}

std::string quoted(const files::path& path) {
  return "'" + path.string() + "' ";
}

}  // namespace

PlayedMac::PlayedMac() {
  for (const auto* name : {"bin", "home", "home/Library", "state", "package", "Applications"}) {
    files::create_directory(folder / name);
  }
  letApplicationsBeWritten(false);
  for (const auto& tool : standIns) {
    files::create_symlink(files::absolute("Tests/Mac/Install/stand-in"), folder / "bin" / tool);
  }
  for (const auto& tool : commonTools) {
    files::create_symlink("/usr/bin/" + tool, folder / "bin" / tool);
  }
  // A Mac's /bin/sh is bash in the same way.
  files::create_symlink("/bin/bash", folder / "bin/sh");
  for (const auto* name : {"install.sh", "uninstall.sh"}) files::copy_file(name, package() / name);
  makeApp(package() / "Brivane.app", "com.quorrel.brivane", "new");
  std::ofstream(package() / "Brivane.app/quarantine") << "x";
  set("user", "501\n");
  set("machine", "Darwin arm64\n");
  set("arm64", "1\n");
  set("system", "13.0\n");
}

files::path PlayedMac::agent() const {
  return home() / "Library/LaunchAgents/com.quorrel.brivane.plist";
}

void PlayedMac::makeApp(const files::path& path, const std::string& identifier,
                        const std::string& version) {
  files::create_directories(path / "Contents/MacOS");
  std::ofstream(path / "Contents/Info.plist")
      << "<key>CFBundleIdentifier</key>\n<string>" << identifier << "</string>\n</plist>\n";
  const auto program = path / "Contents/MacOS/Brivane";
  std::ofstream(program) << "#!/bin/sh\n# " << version
                         << "\necho \"Brivane $*\" >>\"$STATE/calls\"\n";
  files::permissions(program, files::perms::owner_all);
}

std::string PlayedMac::agentFor(const std::string& program, const std::string& foldersMade) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <!-- folders made for it: )" +
         foldersMade + R"( -->
  <key>Label</key>
  <string>com.quorrel.brivane</string>
  <key>AssociatedBundleIdentifiers</key>
  <string>com.quorrel.brivane</string>
  <key>ProgramArguments</key>
  <array>
    <string>)" +
         program + R"(</string>
  </array>
  <key>RunAtLoad</key>
  <true/>
  <key>KeepAlive</key>
  <dict>
    <key>SuccessfulExit</key>
    <false/>
  </dict>
  <key>LimitLoadToSessionType</key>
  <string>Aqua</string>
  <key>ProcessType</key>
  <string>Interactive</string>
</dict>
</plist>
)";
}

void PlayedMac::playTree() const {
  files::create_directories(package() / "Tools");
  files::copy_file("Tools/mac-report.sh", package() / "Tools/mac-report.sh");
  files::create_directories(package() / "build/mac/bin");
  const auto app = package() / "build/mac/Brivane.app";
  files::rename(package() / "Brivane.app", app);
  const auto sealed = app / "Contents/_CodeSignature";
  files::create_directory(sealed);
  std::ofstream(sealed / "CodeResources") << "</plist>\n";
  std::ofstream(app / "Contents/MacOS/Brivane", std::ios::app)
      << "[ -e \"$STATE/dumb\" ] || echo 'Brivane probe'\n";
  for (const auto* name : {"brivane-tests", "brivane-desk"}) {
    const auto program = package() / "build/mac/bin" / name;
    std::ofstream(program) << "#!/bin/sh\n[ ! -e \"$STATE/" << name << "\" ]\n";
    files::permissions(program, files::perms::owner_all);
  }
  files::copy(app, folder / "state/archived", files::copy_options::recursive);
}

void PlayedMac::letApplicationsBeWritten(bool may) const {
  files::permissions(applications(), files::perms::owner_write,
                     may ? files::perm_options::add : files::perm_options::remove);
}

void PlayedMac::playEarlierInstallation(const files::path& where) const {
  makeApp(where / "Brivane.app", "com.quorrel.brivane", "old");
  files::create_directories(agent().parent_path());
  std::ofstream(agent()) << agentFor((where / "Brivane.app/Contents/MacOS/Brivane").string(),
                                     "agents app");
  set("loaded");
  set("running");
}

void PlayedMac::set(const std::string& name, const std::string& value) const {
  std::ofstream(folder / "state" / name) << value;
}

void PlayedMac::forget(const std::string& name) const {
  files::remove(folder / "state" / name);
}

bool PlayedMac::has(const std::string& name) const {
  return files::exists(folder / "state" / name);
}

void PlayedMac::refuse(const std::string& pattern) const {
  std::ofstream(folder / "state/refused", std::ios::app) << pattern << "\n";
}

PlayedMac::Result PlayedMac::run(const std::string& script, const std::string& arguments) const {
  forget("steps");
  // Root may write into every folder; without these rights, it is like everybody else.
  const std::string asAnybody =
      "[ $(id -u) -ne 0 ] || exec setpriv --bounding-set=-dac_override,-dac_read_search "
      "--inh-caps=-all sh -c \"$0\"; ";
  const std::string command =
      "echo $$ >" + quoted(folder / "state/script") + "; exec env -i HOME=" + quoted(home()) +
      "STATE=" + quoted(folder / "state") + "PATH=" + quoted(folder / "bin") +
      "BRIVANE_APPLICATIONS=" + quoted(applications()) + quoted(folder / "bin/sh") +
      quoted(package() / script) + arguments + " 2>&1";
  const auto result = runChildProcess("/bin/sh", {"-c", asAnybody + "exec sh -c \"$0\"", command});
  const auto& finished = std::get<FinishedProcess>(result);
  return {finished.exitStatus, finished.output};
}

int PlayedMac::steps() const {
  return static_cast<int>(linesOf(folder / "state/steps").size());
}

int PlayedMac::stepOf(const std::string& beginning) const {
  const auto lines = linesOf(folder / "state/steps");
  const auto found =
      std::ranges::find_if(lines, [&](const auto& line) { return line.starts_with(beginning); });
  return static_cast<int>(found - lines.begin()) + 1;
}

std::vector<std::string> PlayedMac::calls() const {
  auto found = linesOf(folder / "state/calls");
  forget("calls");
  return found;
}

std::set<std::string> PlayedMac::found() const {
  std::set<std::string> names;
  for (const auto& top : {home(), applications()}) {
    for (const auto& entry : files::recursive_directory_iterator(top)) {
      names.insert(relative(entry.path(), folder.path).string() +
                   (entry.is_directory() ? "/" : ""));
    }
  }
  names.erase("home/Library/");
  return names;
}

std::set<std::string> PlayedMac::foundWith(const files::path& where) const {
  const std::string name = relative(where, folder.path).string() + "/";
  std::set<std::string> names = {"home/Library/LaunchAgents/",
                                 "home/Library/LaunchAgents/com.quorrel.brivane.plist"};
  if (where != applications()) names.insert(name);
  for (const auto* part :
       {"", "Contents/", "Contents/Info.plist", "Contents/MacOS/", "Contents/MacOS/Brivane"}) {
    names.insert(name + "Brivane.app/" + part);
  }
  return names;
}

std::string PlayedMac::version(const files::path& app) {
  const auto lines = linesOf(app / "Contents/MacOS/Brivane");
  return lines.size() >= 3 ? lines[1].substr(2) : "";
}

}  // namespace brivane
