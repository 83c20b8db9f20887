#pragma once
// The configuration as JSON: the setup file's items and fields by name, in file order.
// Single floats are written as the shortest decimal that reads back to the same 32-bit
// float; non-finite numbers as the strings "NaN", "Infinity" and "-Infinity"; variants as
// {"type": code, "value": v} (value null for the empty and null types).
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "core/station.h"

namespace kova::cli {

using Json = nlohmann::ordered_json;

// A key of the JSON that is missing, unknown or of the wrong type.
class JsonKeyError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Parses the JSON text of a configuration. A key given twice in one object would silently
// lose one of its values: it throws JsonKeyError naming the key and both lines. Other
// faults of the text throw nlohmann's parse_error.
Json ParseSetupJson(const std::string& text);

Json SetupToJson(const Station& st);
// Fills the stored items of the station from the JSON; throws JsonKeyError naming the key.
void SetupFromJson(const Json& json, Station& st);
// Pretty-printed JSON text, with floats in their shortest form; ends with a line break.
std::string WriteJson(const Json& json);

}  // namespace kova::cli
