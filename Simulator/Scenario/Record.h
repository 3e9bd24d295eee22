// An object of a scenario as a table of its fields: each is read into a member, and described for
// people and for the schema.

#pragma once

#include <concepts>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "Simulator/Scenario/Kind.h"

namespace sim {

// What an object may hold under one key.
struct Field {
  std::string_view name;
  // For people, of a sentence without its full stop.
  std::string_view meaning;
  bool isRequired = false;
  // Of the value, with what holds where the key is left out as its `default`.
  Schema schema;
};

using Keys = std::vector<std::string_view>;

// Of an object with these fields and no others.
Json schemaOf(const std::vector<Field>& fields);

// `T` is read from an object; a member keeps its initial value where the key is left out.
template <class T>
class Record {
 public:
  template <class Member, class Owner, class Value>
  requires std::derived_from<T, Owner> && std::assignable_from<Member&, Value> Record& optional(
      std::string_view name, Member Owner::*member, const Kind<Value>& kind,
      std::string_view meaning) {
    Schema schema = kind.schema;
    if constexpr (std::same_as<Member, Value>) {
      if (kind.write) {
        schema = [of = kind.schema, write = kind.write, member] {
          Json withDefault = of();
          withDefault["default"] = write(T().*member);
          return withDefault;
        };
      }
    }
    return add({name, meaning, false, std::move(schema)}, member, kind);
  }

  template <class Member, class Owner, class Value>
  requires std::derived_from<T, Owner> && std::assignable_from<Member&, Value> Record& required(
      std::string_view name, Member Owner::*member, const Kind<Value>& kind,
      std::string_view meaning) {
    return add({name, meaning, true, kind.schema}, member, kind);
  }

  // A field that does not go into one member as it is.
  Record& custom(Field field, std::function<void(const Node&, Reading&, T&)> read) {
    fields_.push_back(std::move(field));
    readers_.push_back(std::move(read));
    return *this;
  }

  // What is wrong with a field goes to the errors of the reading; throws only for what is no
  // object.
  [[nodiscard]] T read(const Node& node, Reading& reading, Keys otherKeys = {}) const {
    for (const Field& field : fields_) otherKeys.push_back(field.name);
    node.checkKeys(otherKeys, reading.errors);
    T result;
    for (std::size_t index = 0; index < fields_.size(); ++index) {
      reading.collectErrorOf([&] {
        const auto value = fields_[index].isRequired ? node.require(fields_[index].name)
                                                     : node.find(fields_[index].name);
        if (value) readers_[index](*value, reading, result);
      });
    }
    return result;
  }

  [[nodiscard]] const std::vector<Field>& fields() const noexcept { return fields_; }

 private:
  template <class Member, class Owner, class Value>
  Record& add(Field field, Member Owner::*member, const Kind<Value>& kind) {
    return custom(std::move(field),
                  [member, read = kind.read](const Node& node, Reading& reading, T& result) {
                    result.*member = read(node, reading);
                  });
  }

  std::vector<Field> fields_;
  std::vector<std::function<void(const Node&, Reading&, T&)>> readers_;
};

// An object as a kind of value.
template <class T>
Kind<T> objectOf(const Record<T>& record) {
  return {[record](const Node& node, Reading& reading) { return record.read(node, reading); },
          [record] { return schemaOf(record.fields()); }};
}

}  // namespace sim
