// A file's bytes in memory, without being read in.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded::scip {

/// A file mapped for reading. It must not be shortened while it is mapped.
class MappedFile {
  public:
    /// Throws `std::runtime_error` with one line that names the file and says why it cannot be read.
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    /// The content, valid as long as this object lives.
    [[nodiscard]] std::string_view bytes() const { return {static_cast<const char*>(address_), size_}; }

    /// Gives back the memory that `bytes`, a part of the content, take up. They stay valid: what is still needed of
    /// them is fetched again. Never throws: what cannot be given back stays.
    void release(std::string_view bytes) const noexcept;

  private:
    std::string path_;
    void* address_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace embedded::scip
