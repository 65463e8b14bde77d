#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>

namespace korv::tools {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

/// Adds a string. `text`: UTF-8.
inline void add_string(std::string_view text, JsonWriter& json) {
    json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

/// Adds the key of the next value.
inline void add_key(std::string_view name, JsonWriter& json) {
    json.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
}

/// Adds a value that is JSON already.
inline void add_raw(std::string_view value, rapidjson::Type type, JsonWriter& json) {
    json.RawValue(value.data(), value.size(), type);
}

}  // namespace korv::tools
