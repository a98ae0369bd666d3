#include "host/changes/changes_json.h"

#include "host/text/json_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace host::changes {

namespace {

std::string_view name_of(User::Now now) {
    switch (now) {
    case User::Now::USES:
        return "uses";
    case User::Now::UNCHANGED:
        return "unchanged";
    case User::Now::CHANGED:
        return "changed";
    case User::Now::GONE:
        return "gone";
    case User::Now::UNKNOWN:
        return "unknown";
    }
    return "";
}

void write_texts(JsonValue& value, const std::vector<std::string>& texts) {
    value.array([&] {
        for (const std::string& text : texts) {
            value.value(text);
        }
    });
}

void write_declared(JsonValue& value, const Declared& declared) {
    value.object([&] {
        value.member("name").value(declared.name);
        value.member("fqn").value(declared.fqn);
        value.member("kind").value(declared.kind);
        value.member("path").value(declared.path);
        value.member("start_line").value(declared.first_line);
        value.member("end_line").value(declared.last_line);
        value.member("signature").value(declared.signature);
        value.member("is_public").value(declared.is_public);
    });
}

void write_users(JsonValue& value, const DeclarationChange& change) {
    value.member("users").array([&] {
        for (const User& user : change.users) {
            value.object([&] {
                value.member("path").value(user.path);
                value.member("references").value(user.references);
                value.member("now").value(name_of(user.now));
            });
        }
    });
    value.member("distant").array([&] {
        for (const Distant& file : change.distant) {
            value.object([&] {
                value.member("path").value(file.path);
                value.member("distance").value(file.distance);
            });
        }
    });
    write_texts(value.member("tests"), change.tests);
    value.member("name_matches").value(change.name_matches);
}

void write_removed(JsonValue& value, const DeclarationChange& change) {
    value.object([&] {
        write_declared(value.member("before"), *change.before);
        value.member("members").value(change.members);
        write_users(value, change);
    });
}

void write_changed(JsonValue& value, const DeclarationChange& change) {
    value.object([&] {
        write_declared(value.member("before"), *change.before);
        write_declared(value.member("after"), *change.after);
        value.member("is_moved").value(change.is_moved);
        value.member("is_renamed").value(change.is_renamed);
        value.member("has_other_signature").value(change.has_other_signature);
        value.member("has_other_kind").value(change.has_other_kind);
        value.member("has_other_visibility").value(change.has_other_visibility);
        write_users(value, change);
    });
}

void write_added(JsonValue& value, const DeclarationChange& change) {
    value.object([&] {
        write_declared(value.member("after"), *change.after);
        value.member("members").value(change.members);
    });
}

template <class Value>
void write_array(JsonWriter& json, std::string_view key, const std::vector<Value>& values,
                 void (*write)(JsonValue&, const Value&)) {
    json.array(key, [&] {
        for (const Value& value : values) {
            write(json.element(), value);
        }
    });
}

}  // namespace

void write_json(std::ostream& out, const Changes& changes) {
    JsonWriter json(out);
    json.document([&] {
        write_texts(json.member("added_files"), changes.added_files);
        write_texts(json.member("removed_files"), changes.removed_files);
        write_array<MovedFile>(json, "moved_files", changes.moved_files, [](JsonValue& value, const MovedFile& file) {
            value.object([&] {
                value.member("old_path").value(file.old_path);
                value.member("new_path").value(file.new_path);
            });
        });
        write_texts(json.member("changed_files"), changes.changed_files);
        write_array(json, "removed", changes.removed, write_removed);
        write_array(json, "changed", changes.changed, write_changed);
        write_array(json, "added", changes.added, write_added);
        write_array<FileUsersChange>(json, "users", changes.users, [](JsonValue& value, const FileUsersChange& change) {
            value.object([&] {
                value.member("path").value(change.path);
                write_texts(value.member("gained"), change.gained);
                write_texts(value.member("lost"), change.lost);
            });
        });
        write_array(json, "unused", changes.unused, write_declared);
        write_array(json, "used_again", changes.used_again, write_declared);
    });
}

}  // namespace host::changes
