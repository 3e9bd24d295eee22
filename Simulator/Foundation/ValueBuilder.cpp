#include "Simulator/Foundation/ValueBuilder.h"

#include <utility>

#include "Simulator/Foundation/FormatError.h"

namespace sim {
namespace {

std::size_t sizeOf(const zib::Value& scalar) {
  if (const auto* text = scalar.get<std::string>()) return text->size();
  if (const auto* bytes = scalar.get<zib::Bytes>()) return bytes->size();
  return 0;
}

}  // namespace

void ValueBuilder::open(Open container) {
  budget_.spendValue();
  budget_.enter();
  open_.push_back(std::move(container));
}

void ValueBuilder::beginArray() { open(zib::Array()); }

void ValueBuilder::beginDictionary() { open(OpenDictionary()); }

bool ValueBuilder::awaitsKey() const noexcept {
  const auto* dictionary = open_.empty() ? nullptr : std::get_if<OpenDictionary>(&open_.back());
  return dictionary != nullptr && !dictionary->key;
}

bool ValueBuilder::awaitsValue() const noexcept {
  const auto* dictionary = open_.empty() ? nullptr : std::get_if<OpenDictionary>(&open_.back());
  return dictionary != nullptr && dictionary->key;
}

void ValueBuilder::key(std::string text) {
  if (!awaitsKey()) throw FormatError("a key stands where none is expected");
  budget_.spendBytes(text.size());
  std::get<OpenDictionary>(open_.back()).key = std::move(text);
}

void ValueBuilder::add(zib::Value scalar) {
  budget_.spendValue();
  budget_.spendBytes(sizeOf(scalar));
  place(std::move(scalar));
}

void ValueBuilder::place(zib::Value value) {
  if (awaitsKey()) throw FormatError("a value in a dictionary has no key");
  if (open_.empty()) {
    if (root_) throw FormatError("there is more than one value at the top");
    root_ = std::move(value);
  } else if (auto* array = std::get_if<zib::Array>(&open_.back())) {
    array->push_back(std::move(value));
  } else {
    auto& dictionary = std::get<OpenDictionary>(open_.back());
    dictionary.members.insert_or_assign(std::move(*dictionary.key), std::move(value));
    dictionary.key.reset();
  }
}

void ValueBuilder::end() {
  if (awaitsValue()) throw FormatError("a key in a dictionary has no value");
  Open container = std::move(open_.back());
  open_.pop_back();
  budget_.leave();
  if (auto* array = std::get_if<zib::Array>(&container)) {
    place(std::move(*array));
  } else {
    place(mapFrom(std::move(std::get<OpenDictionary>(container).members)));
  }
}

std::optional<zib::Value> ValueBuilder::take() {
  return open_.empty() ? std::exchange(root_, std::nullopt) : std::nullopt;
}

}  // namespace sim
