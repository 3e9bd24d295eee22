// NSData from and to files, with the errors that Foundation gives and nothing on standard error.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/CocoaError.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

constexpr UInteger writesAtomically = 1U << 0U;
constexpr UInteger withoutOverwriting = 1U << 1U;

class File {
 public:
  File(const std::string& path, int flags)
      : descriptor_(open(path.c_str(), flags | O_CLOEXEC, 0666)) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  explicit operator bool() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }
  // Some file systems find out only now that there is no room.
  bool closeNow() { return close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_;
};

bool writeAll(int descriptor, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

bool writeFile(const std::string& path, int flags, std::span<const std::uint8_t> bytes) {
  File file(path, O_WRONLY | O_CREAT | flags);
  return file && writeAll(file.descriptor(), bytes) && file.closeNow();
}

// Beside the file, then in its place, so that nobody sees a part of it.
bool replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  const std::string beside = path + ".being-written-" + std::to_string(getpid());
  if (writeFile(beside, O_TRUNC, bytes) && std::rename(beside.c_str(), path.c_str()) == 0) {
    return true;
  }
  const int failure = errno;
  unlink(beside.c_str());
  errno = failure;
  return false;
}

bool writeTo(const std::string& path, UInteger options, std::span<const std::uint8_t> bytes) {
  if ((options & withoutOverwriting) != 0) return writeFile(path, O_EXCL, bytes);
  if ((options & writesAtomically) != 0) return replaceFile(path, bytes);
  return writeFile(path, O_TRUNC, bytes);
}

std::optional<zib::Bytes> readFrom(const std::string& path) {
  const File file(path, O_RDONLY);
  if (!file) return std::nullopt;
  zib::Bytes bytes;
  std::array<std::uint8_t, 65536> part;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  while (true) {
    const ssize_t count = read(file.descriptor(), part.data(), part.size());
    if (count == 0) return bytes;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    bytes.insert(bytes.end(), part.begin(), part.begin() + count);
  }
}

CocoaError writeCode(int errorNumber) {
  switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
      return CocoaError::fileNoSuchFile;
    case EACCES:
    case EPERM:
      return CocoaError::fileWriteNoPermission;
    case ENAMETOOLONG:
    case EINVAL:
      return CocoaError::fileWriteInvalidFileName;
    case EEXIST:
      return CocoaError::fileWriteFileExists;
    case ENOSPC:
    case EDQUOT:
      return CocoaError::fileWriteOutOfSpace;
    case EROFS:
      return CocoaError::fileWriteVolumeReadOnly;
    default:
      return CocoaError::fileWriteUnknown;
  }
}

CocoaError readCode(int errorNumber) {
  switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
      return CocoaError::fileReadNoSuchFile;
    case EACCES:
    case EPERM:
      return CocoaError::fileReadNoPermission;
    case ENAMETOOLONG:
    case EINVAL:
      return CocoaError::fileReadInvalidFileName;
    default:
      return CocoaError::fileReadUnknown;
  }
}

// The path of a file URL, none for any other.
std::optional<std::string> pathOf(id url) {
  if (send<BOOL>(url, selector<"isFileURL">()) == 0) return std::nullopt;
  return zib::utf8From(send<id>(url, selector<"path">()));
}

std::string sentence(std::string_view what, const std::string& path, int errorNumber) {
  return std::string(what) + " “" + path + "”: " + std::generic_category().message(errorNumber);
}

BOOL writeToURL(id data, SEL, id url, UInteger options, id* error) {
  const std::optional<std::string> path = pathOf(url);
  if (!path) {
    report(makeError(CocoaError::fileWriteUnsupportedScheme, "The URL is not that of a file"),
           error);
    return 0;
  }
  if (writeTo(*path, options, zib::bytesOf(data))) return 1;
  const int failure = errno;
  report(makeFileError(writeCode(failure), sentence("Cannot write", *path, failure), failure),
         error);
  return 0;
}

// None when there is an error.
std::optional<zib::Bytes> contentsOf(id url, id* error) {
  const std::optional<std::string> path = pathOf(url);
  if (!path) {
    report(makeError(CocoaError::fileReadUnsupportedScheme, "The URL is not that of a file"),
           error);
    return std::nullopt;
  }
  std::optional<zib::Bytes> bytes = readFrom(*path);
  if (!bytes) {
    const int failure = errno;
    report(makeFileError(readCode(failure), sentence("Cannot read", *path, failure), failure),
           error);
  }
  return bytes;
}

id initWithContentsOfURL(id data, SEL, id url, UInteger /*options*/, id* error) {
  const std::optional<zib::Bytes> bytes = contentsOf(url, error);
  if (!bytes) {
    zib::objc::release(data);
    return nullptr;
  }
  return send<id>(data, selector<"initWithBytes:length:">(),
                  static_cast<const void*>(bytes->data()), static_cast<UInteger>(bytes->size()));
}

id dataWithContentsOfURL(id cls, SEL, id url, UInteger options, id* error) {
  const id allocated = send<id>(cls, selector<"alloc">());
  return autoreleased(Object::adopted(send<id>(
      allocated, selector<"initWithContentsOfURL:options:error:">(), url, options, error)));
}

}  // namespace

void foundation::installFileData() {
  const zib::Class data = zib::Class::named("NSData");
  installMethod(data, "writeToURL:options:error:", &writeToURL);
  installMethod(data, "initWithContentsOfURL:options:error:", &initWithContentsOfURL);
  installClassMethod(data, "dataWithContentsOfURL:options:error:", &dataWithContentsOfURL);
}

}  // namespace sim
