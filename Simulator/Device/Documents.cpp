#include "Simulator/Device/Documents.h"

#include <sys/fsuid.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <system_error>

#include "Simulator/Foundation/Base64.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ErrorPointer.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::objc::id;
using zib::objc::UInteger;

namespace fs = std::filesystem;

// Marks a file that has been recorded: whoever writes it again sets another time. The clock of the
// file system is too coarse to tell two writes of one moment apart.
constexpr fs::file_time_type recordedTime{};

std::vector<std::uint8_t> bytesOfFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Null for what is no property list, and for the forms that have no name here.
Json nameOfFormat(UInteger format) {
  switch (format) {
    case 1:
      return "openStep";
    case 100:
      return "xml";
    case 200:
      return "binary";
    default:
      return nullptr;
  }
}

void record(const std::string& name, const std::vector<std::uint8_t>& bytes) {
  const zib::Object data = zib::makeData(bytes);
  UInteger format = 0;
  const auto list = zib::objectOrError([&](id* error) {
    return zib::sendToClass<"NSPropertyListSerialization",
                            "propertyListWithData:options:format:error:">(data.raw(), UInteger{0},
                                                                          &format, error);
  });
  Timeline::shared().add("file",
                         {{"name", name},
                          {"format", list ? nameOfFormat(format) : Json()},
                          {"value", list ? jsonFromObject(list->raw()) : Json(base64From(bytes))}});
}

[[noreturn]] void failForTemporaries(const std::string& why) {
  const char* const named = std::getenv("TMPDIR");  // NOLINT(concurrency-mt-unsafe)
  throw std::runtime_error("TMPDIR: \"" + std::string(named == nullptr ? "/tmp" : named) +
                           "\": no folder can be made in it: " + why +
                           "; allowed: a folder for temporary files");
}

}  // namespace

DocumentsFolder::DocumentsFolder(Documents kind) {
  if (kind == Documents::missing) return;
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  if (error) failForTemporaries(error.message());
  std::string pattern = (fs::absolute(parent) / "zibsim-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) {
    failForTemporaries(std::generic_category().message(errno));
  }
  path_ = pattern;
  using fs::perms;
  const perms readable = perms::owner_read | perms::owner_exec | perms::group_read |
                         perms::group_exec | perms::others_read | perms::others_exec;
  if (kind == Documents::readOnly) fs::permissions(path_, readable);
}

DocumentsFolder::~DocumentsFolder() {
  std::error_code ignored;
  if (!path_.empty()) fs::remove_all(path_, ignored);
}

void giveUpFilePrivileges() {
  if (::geteuid() != 0) return;
  constexpr uid_t nobody = 65534;
  constexpr uid_t nothingButAsk = static_cast<uid_t>(-1);
  ::setfsuid(nobody);
  if (::setfsuid(nothingButAsk) != static_cast<int>(nobody)) {
    throw std::runtime_error("root's file privileges cannot be given up");
  }
}

void DocumentsWatch::recordWritten() const {
  if (folder_.empty()) return;
  std::set<fs::path> written;
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    if (entry.is_regular_file() && entry.last_write_time() != recordedTime) written.insert(entry);
  }
  for (const fs::path& file : written) {
    record(file.lexically_relative(folder_).string(), bytesOfFile(file));
    fs::last_write_time(file, recordedTime);
  }
}

}  // namespace sim
