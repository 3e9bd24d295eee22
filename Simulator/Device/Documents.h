// The Documents folder of a simulated device, on the disk of this machine.

#pragma once

#include <filesystem>

#include "Simulator/Json/Names.h"

namespace sim {

enum class Documents { writable, readOnly, missing };

template <>
struct Names<Documents> {
  static constexpr Named<Documents> rows[] = {{Documents::writable, "writable"},
                                              {Documents::readOnly, "readOnly"},
                                              {Documents::missing, "missing"}};
};

// A fresh folder, removed at the end with all that is in it. Held by the process that starts the
// scenario's, so that it goes too when that one dies.
class DocumentsFolder {
 public:
  explicit DocumentsFolder(Documents kind);
  DocumentsFolder(const DocumentsFolder&) = delete;
  DocumentsFolder& operator=(const DocumentsFolder&) = delete;
  ~DocumentsFolder();

  // Empty where the device has no such directory.
  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

// Makes file modes count for this process even if it is root's. For good, and for all threads that
// this one starts from now on.
void giveUpFilePrivileges();

// Puts what is written to Documents into the timeline.
class DocumentsWatch {
 public:
  // An empty path is a folder in which nothing is ever written.
  explicit DocumentsWatch(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // Records each file that was written since the last call, in order of the names.
  void recordWritten() const;

 private:
  std::filesystem::path folder_;
};

}  // namespace sim
