#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Tests/Support/TemporaryFolder.h"

namespace brivane {

/// What `install.sh`, `uninstall.sh` and `Tools/mac-report.sh` need of a Mac: a home folder, an
/// applications folder that its user may not write (for root neither, here), the unpacked archive,
/// and stand-ins for the system's tools.
class PlayedMac {
 public:
  struct Result {
    int status = -1;
    /// Of both standard outputs.
    std::string output;
  };

  PlayedMac();

  std::filesystem::path package() const { return folder / "package"; }
  std::filesystem::path home() const { return folder / "home"; }
  std::filesystem::path applications() const { return folder / "Applications"; }
  /// Where it is installed without a word about the folder.
  std::filesystem::path app() const { return home() / "Applications/Brivane.app"; }
  std::filesystem::path agent() const;

  /// An app with these bytes as its program.
  static void makeApp(const std::filesystem::path& path, const std::string& identifier,
                      const std::string& version);
  static std::string agentFor(const std::string& program, const std::string& foldersMade);
  /// What Tools/mac-report.sh takes: the tree instead of the archive, with what its build makes.
  /// The state `brivane-tests` or `brivane-desk` has that program fail.
  void playTree() const;
  void letApplicationsBeWritten(bool may) const;
  /// As if an earlier version was installed in that folder, which was there, and runs.
  void playEarlierInstallation(const std::filesystem::path& where) const;

  /// What the stand-ins know: see Tests/Mac/Install/stand-in.
  void set(const std::string& name, const std::string& value = "") const;
  void forget(const std::string& name) const;
  bool has(const std::string& name) const;
  /// Refuses every call that fits the pattern.
  void refuse(const std::string& pattern) const;

  /// `arguments` as a shell reads them.
  Result run(const std::string& script, const std::string& arguments = "") const;
  /// Of the last run: calls of tools that may change something.
  int steps() const;
  /// Of those the first call that begins so, counted from 1.
  int stepOf(const std::string& beginning) const;
  /// How the system's tools were called since the last time.
  std::vector<std::string> calls() const;

  /// Files and folders in the home and in the applications folder, from the folder of both, without
  /// what a Mac has anyway. Folders end in a slash.
  std::set<std::string> found() const;
  /// Of an installed app and its agent.
  std::set<std::string> foundWith(const std::filesystem::path& where) const;
  /// Of the program in the app; empty without one.
  static std::string version(const std::filesystem::path& app);

 private:
  TemporaryFolder folder;
};

}  // namespace brivane
