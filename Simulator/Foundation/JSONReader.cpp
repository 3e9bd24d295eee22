#include "Simulator/Foundation/JSONReader.h"

#include <nlohmann/json.hpp>

#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/TextEncoding.h"
#include "Simulator/Foundation/ValueBuilder.h"

namespace sim {
namespace {

using nlohmann::json;

// The library's message without its own prefix in brackets.
std::string messageOf(const std::exception& error) {
  const std::string_view text = error.what();
  const std::size_t end = text.find("] ");
  return std::string(end == std::string_view::npos ? text : text.substr(end + 2));
}

class Handler : public nlohmann::json_sax<json> {
 public:
  bool null() override { return add(zib::Null()); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(std::int64_t value) override { return add(value); }
  bool number_unsigned(std::uint64_t value) override { return add(value); }
  bool number_float(double value, const std::string& /*text*/) override { return add(value); }
  bool string(std::string& value) override { return add(std::move(value)); }
  bool binary(json::binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*count*/) override {
    builder_.beginDictionary();
    return true;
  }
  bool key(std::string& text) override {
    builder_.key(std::move(text));
    return true;
  }
  bool end_object() override { return end(); }
  bool start_array(std::size_t /*count*/) override {
    builder_.beginArray();
    return true;
  }
  bool end_array() override { return end(); }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const json::exception& error) override {
    throw FormatError(messageOf(error));
  }

  zib::Value take() { return *builder_.take(); }

 private:
  bool add(zib::Value scalar) {
    builder_.add(std::move(scalar));
    return true;
  }
  bool end() {
    builder_.end();
    return true;
  }

  ValueBuilder builder_;
};

bool isContainer(const zib::Value& value) {
  return value.get<zib::Array>() != nullptr || value.get<zib::ValueMap>() != nullptr;
}

}  // namespace

zib::Value readJSON(std::span<const std::uint8_t> bytes, bool allowsFragments) {
  if (bytes.empty()) throw FormatError("there is no text");
  if (bytes.size() > Budget::maximumBytes) throw FormatError("it holds more than 64 MB");
  const std::string text = textFrom(bytes);
  // The parser takes a NUL for the end, and would not look at what follows.
  if (text.find('\0') != std::string_view::npos)
    throw FormatError("the text holds a NUL character");
  Handler handler;
  json::sax_parse(text, &handler);
  zib::Value value = handler.take();
  if (!allowsFragments && !isContainer(value)) {
    throw FormatError("the text does not start with an array or an object");
  }
  return value;
}

}  // namespace sim
