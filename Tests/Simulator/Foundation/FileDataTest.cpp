// NSData from and to files, which GNUstep does without an error object.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::makeString;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::UInteger;

// In a folder of its own that goes with it.
class FileDataTest : public test::FoundationTest {
 protected:
  FileDataTest() {
    std::string name = testing::TempDir() + "foundation-XXXXXX";
    folder_ = mkdtemp(name.data());
  }
  ~FileDataTest() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ + "/" + name; }

 private:
  std::string folder_;
};

id fileURL(const std::string& path) {
  return send<id>(classNamed<"NSURL">().object(), selector<"fileURLWithPath:">(),
                  makeString(path).raw());
}

id webURL() {
  return send<id>(classNamed<"NSURL">().object(), selector<"URLWithString:">(),
                  makeString("http://host/file").raw());
}

// None when it was written.
std::optional<zib::Error> write(id url, std::string_view text, UInteger options = 0) {
  const zib::Object data =
      zib::makeData({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  id error = nullptr;
  const BOOL isWritten =
      send<BOOL>(data.raw(), selector<"writeToURL:options:error:">(), url, options, &error);
  EXPECT_EQ(isWritten != 0, error == nullptr);
  return isWritten != 0 ? std::nullopt : std::optional(zib::Error::fromNative(error));
}

struct Contents {
  std::string text;
  std::optional<zib::Error> error;
};

Contents read(id url) {
  id error = nullptr;
  const id data =
      send<id>(classNamed<"NSData">().object(), selector<"dataWithContentsOfURL:options:error:">(),
               url, UInteger{0}, &error);
  if (data == nullptr) return {{}, zib::Error::fromNative(error)};
  const auto bytes = zib::bytesOf(data);
  return {std::string(bytes.begin(), bytes.end()), std::nullopt};
}

id underlying(const zib::Error& error) {
  return send<id>(send<id>(error.native.raw(), selector<"userInfo">()), selector<"objectForKey:">(),
                  makeString("NSUnderlyingError").raw());
}

TEST_F(FileDataTest, WritesAndReadsBack) {
  const std::string text = std::string("a\0ä", 4) + std::string(200'000, 'x');
  EXPECT_FALSE(write(fileURL(path("a b#ä")), text));
  EXPECT_TRUE(std::filesystem::exists(path("a b#ä")));
  EXPECT_EQ(read(fileURL(path("a b#ä"))).text, text);
}

TEST_F(FileDataTest, ReplacesALongerFile) {
  EXPECT_FALSE(write(fileURL(path("file")), "long"));
  EXPECT_FALSE(write(fileURL(path("file")), "x"));
  EXPECT_EQ(read(fileURL(path("file"))).text, "x");
  EXPECT_FALSE(write(fileURL(path("file")), ""));
  EXPECT_EQ(read(fileURL(path("file"))).text, "");
}

TEST_F(FileDataTest, WritesAtomicallyOnRequest) {
  EXPECT_FALSE(write(fileURL(path("file")), "old"));
  EXPECT_FALSE(write(fileURL(path("file")), "new", 1));
  EXPECT_EQ(read(fileURL(path("file"))).text, "new");
  std::filesystem::directory_iterator files(path(""));
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST_F(FileDataTest, KeepsAnExistingFileOnRequest) {
  EXPECT_FALSE(write(fileURL(path("file")), "old", 2));
  const auto error = write(fileURL(path("file")), "new", 2);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, 516);
  EXPECT_EQ(read(fileURL(path("file"))).text, "old");
}

TEST_F(FileDataTest, AMissingFolderIsAnErrorWithTheSystemsFinding) {
  const auto error = write(fileURL(path("missing/file")), "x");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain, "NSCocoaErrorDomain");
  EXPECT_EQ(error->code, 4);
  EXPECT_NE(error->description.find("missing/file"), std::string::npos);
  const zib::Error system = zib::Error::fromNative(underlying(*error));
  EXPECT_EQ(system.domain, "NSPOSIXErrorDomain");
  EXPECT_EQ(system.code, ENOENT);
  EXPECT_EQ(system.description, "No such file or directory");
}

TEST_F(FileDataTest, EachCauseHasItsCode) {
  const auto code = [](const std::string& path) { return write(fileURL(path), "x")->code; };
  EXPECT_EQ(code(path(std::string(300, 'n'))), 514);
  EXPECT_EQ(code(path("")), 512);
  EXPECT_EQ(code("/dev/full"), 640);
  EXPECT_EQ(write(webURL(), "x")->code, 518);
  EXPECT_EQ(write(nullptr, "x")->code, 518);
}

TEST_F(FileDataTest, AForbiddenFolderIsAnError) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
  std::filesystem::permissions(path(""), std::filesystem::perms::owner_read);
  EXPECT_EQ(write(fileURL(path("file")), "x")->code, 513);
  std::filesystem::permissions(path(""), std::filesystem::perms::owner_all);
}

TEST_F(FileDataTest, ReadingHasItsOwnCodes) {
  const auto code = [](id url) { return read(url).error->code; };
  EXPECT_EQ(code(fileURL(path("missing"))), 260);
  EXPECT_EQ(code(fileURL(path(std::string(300, 'n')))), 258);
  EXPECT_EQ(code(fileURL(path(""))), 256);
  EXPECT_EQ(code(webURL()), 262);
  EXPECT_EQ(zib::Error::fromNative(underlying(*read(fileURL(path("missing"))).error)).code, ENOENT);
}

TEST_F(FileDataTest, ErrorsNeedNotBeAskedFor) {
  EXPECT_EQ(send<BOOL>(zib::makeData({}).raw(), selector<"writeToURL:options:error:">(),
                       fileURL(path("missing/file")), UInteger{0}, static_cast<id*>(nullptr)),
            0);
}

TEST_F(FileDataTest, NothingIsPrinted) {
  testing::internal::CaptureStderr();
  write(fileURL(path("missing/file")), "x");
  read(fileURL(path("missing/file")));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
