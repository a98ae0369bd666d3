#include "host/serve/schema.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace host::serve {

namespace {

std::string name_of(const std::string& type) {
    return type == "string"    ? "a string"
           : type == "integer" ? "an integer"
           : type == "number"  ? "a number"
           : type == "boolean" ? "true or false"
           : type == "array"   ? "an array"
                               : "an object";
}

bool has_type(const Received& value, const std::string& type) {
    return type == "string"    ? value.is_string()
           : type == "number"  ? value.is_number()
           : type == "boolean" ? value.is_boolean()
           : type == "array"   ? value.is_array()
           : type == "object"  ? value.is_object()
                               : value.is_number() && std::trunc(value.get<double>()) == value.get<double>();
}

std::string keys_of(const Sent& members) {
    std::string keys;
    for (const auto& [key, member] : members.items()) {
        keys.append(keys.empty() ? "" : ", ").append(key);
    }
    return keys;
}

// Throws unless the measure of a value lies within the limits that the schema states under two keys.
void check_limits(double measure, const Sent& schema, const char* least, const char* most, const std::string& field,
                  const std::string& of) {
    if (schema.contains(least) && measure < schema[least].get<double>()) {
        throw bad_parameter(field, "must " + of + " at least " + schema[least].dump());
    }
    if (schema.contains(most) && measure > schema[most].get<double>()) {
        throw bad_parameter(field, "must " + of + " at most " + schema[most].dump());
    }
}

Received checked_at(Received value, const Sent& schema, const std::string& field);

void check_members(Received& object, const Sent& schema, const std::string& field) {
    const Sent& members = schema["properties"];
    const std::string prefix = field.empty() ? "" : field + ".";
    for (const auto& [key, value] : object.items()) {
        if (!members.contains(key)) {
            throw bad_parameter(prefix + key, "unknown parameter; the parameters are " + keys_of(members));
        }
        value = checked_at(std::move(value), members[key], prefix + key);
    }
    for (const auto& [key, member] : members.items()) {
        if (!object.contains(key) && member.contains("default")) {
            object[key] = Received(member["default"]);
        }
    }
    for (const Sent& key : schema.value("required", Sent::array())) {
        if (!object.contains(key.get<std::string>())) {
            throw bad_parameter(prefix + key.get<std::string>(), "is missing");
        }
    }
}

Received checked_at(Received value, const Sent& schema, const std::string& field) {
    const std::string type = schema["type"];
    if (!has_type(value, type)) {
        throw bad_parameter(field, "must be " + name_of(type));
    }
    if (schema.contains("enum") && std::ranges::find(schema["enum"], Sent(value)) == schema["enum"].end()) {
        throw bad_parameter(field, "must be one of " + schema["enum"].dump());
    }
    if (type == "integer" || type == "number") {
        check_limits(value.get<double>(), schema, "minimum", "maximum", field, "be");
        return type == "integer" ? Received(value.get<std::int64_t>()) : value;
    }
    if (type == "string") {
        const auto& text = value.get_ref<const std::string&>();
        check_limits(static_cast<double>(text.size()), schema, "minLength", "maxLength", field, "have a length of");
        if (text.find('\0') != std::string::npos) {
            throw bad_parameter(field, "must not contain a NUL");
        }
    } else if (type == "array") {
        check_limits(static_cast<double>(value.size()), schema, "minItems", "maxItems", field, "have a length of");
        for (std::size_t at = 0; at < value.size(); ++at) {
            value[at] = checked_at(std::move(value[at]), schema["items"], field + "[" + std::to_string(at) + "]");
        }
    } else if (type == "object") {
        check_members(value, schema, field);
    }
    return value;
}

}  // namespace

Received checked(Received value, const Sent& schema) {
    return checked_at(std::move(value), schema, "");
}

}  // namespace host::serve
