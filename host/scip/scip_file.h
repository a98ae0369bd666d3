// A SCIP file as a whole: its metadata, and its documents one at a time.
#pragma once

#include "host/files/input_file.h"
#include "host/scip/reader.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace host::scip {

/// A SCIP file, whose framing is known to be sound: it is no other kind of file and is not cut short. What a document
/// holds may still turn out not to parse. Takes as much memory as the largest document.
class ScipFile {
  public:
    /// Looks through the whole file, which takes its time, calling `after_each_field`: what that throws passes through.
    /// Throws `std::runtime_error` with one line that names the file, says what is wrong with it (not SCIP, truncated,
    /// damaged and where) and what to do; and what `InputFile` throws.
    ScipFile(InputFile file, const std::function<void()>& after_each_field);

    [[nodiscard]] const std::string& name() const { return file_.name(); }

    [[nodiscard]] const Metadata& metadata() const { return metadata_; }
    [[nodiscard]] std::size_t document_count() const { return documents_.size(); }

    /// A hash of all its bytes, which are read for it.
    [[nodiscard]] std::int64_t content_hash();

    /// Calls `visit` with every document, in the order of the file; what it looks at lives as long as the call. Throws
    /// as the constructor does, also for the `protozero::exception` of `visit`; other exceptions of it pass through.
    void for_each_document(const std::function<void(const Document&)>& visit);

  private:
    // A field of the file's one message: its tag and size stand at `offset`, its content at `begin`.
    struct Field {
        std::size_t offset;
        std::size_t begin;
        std::size_t size;  // as it says; the file may end before
        std::uint32_t tag_and_type;
    };

    Field field_at(std::size_t offset);
    [[nodiscard]] bool is_whole(const Field& field) const;
    std::size_t read_metadata();

    InputFile file_;
    Metadata metadata_;
    std::vector<Field> documents_;
};

}  // namespace host::scip
