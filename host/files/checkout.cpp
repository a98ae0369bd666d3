#include "host/files/checkout.h"

#include "host/files/content_hash.h"
#include "host/text/utf8.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace host {

namespace fs = std::filesystem;

namespace {

bool is_plain(std::string_view path) {
    return !path.empty() && path.find('\0') == std::string_view::npos;
}

bool stays_below(const fs::path& path) {
    return path.is_relative() && std::ranges::find(path, fs::path("..")) == path.end();
}

// Compares whole segments: `/a/b` does not contain `/a/bc`.
bool contains(const fs::path& folder, const fs::path& path) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

// What a path leads to.
enum class End { NOTHING, REGULAR_FILE, OTHER_FILE, UNKNOWN };

// Where a path leads on which there is no symbolic link; UNKNOWN when there is one, or the system does not tell. One
// call to the system, where resolving a path takes one for each folder.
End end_of(const fs::path& path) {
    const open_how how{.flags = O_PATH | O_CLOEXEC, .mode = 0, .resolve = RESOLVE_NO_SYMLINKS};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system declares it so
    const auto file = static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how));
    if (file < 0) {
        return errno == ENOENT || errno == ENOTDIR ? End::NOTHING : End::UNKNOWN;
    }
    struct stat status {};
    const bool is_known = fstat(file, &status) == 0;
    close(file);
    return !is_known ? End::UNKNOWN : S_ISREG(status.st_mode) ? End::REGULAR_FILE : End::OTHER_FILE;
}

// Splits a text that comes piece by piece into lines.
class LineSplitter {
  public:
    void add(std::string_view piece) {
        const bool has_mark = std::exchange(is_start_, false) && piece.starts_with(BYTE_ORDER_MARK);
        piece.remove_prefix(has_mark ? BYTE_ORDER_MARK.size() : 0);
        for (std::size_t end = piece.find('\n'); end != std::string_view::npos; end = piece.find('\n')) {
            line_ += piece.substr(0, end);
            if (line_.ends_with('\r')) {
                line_.pop_back();
            }
            lines_.push_back(std::exchange(line_, {}));
            piece.remove_prefix(end + 1);
        }
        line_ += piece;
    }

    std::vector<std::string> finish() {
        if (!line_.empty()) {
            lines_.push_back(std::exchange(line_, {}));
        }
        return std::exchange(lines_, {});
    }

  private:
    std::vector<std::string> lines_;
    std::string line_;
    bool is_start_ = true;
};

// Reads the file to its end, piece by piece. Returns whether that succeeds. A first piece shorter than a byte-order
// mark is the whole file.
template <class Take>
bool read_pieces(const fs::path& path, Take take) {
    constexpr std::size_t PIECE = 16'384;
    std::ifstream file(path, std::ios::binary);
    std::string piece(PIECE, '\0');
    while (file.read(piece.data(), PIECE) || file.gcount() > 0) {
        take(std::string_view(piece.data(), static_cast<std::size_t>(file.gcount())));
    }
    return file.eof() && !file.bad();
}

std::string fault(const std::error_code& error) {
    if (error == std::errc::no_such_file_or_directory) {
        return "no such folder";
    }
    return error == std::errc::not_a_directory ? "not a folder" : "cannot be read (" + error.message() + ")";
}

// Resolves the symbolic links of the folder's path; throws when it cannot be entered.
fs::path folder_at(const std::string& root) {
    std::error_code error;
    fs::path folder = fs::canonical(root, error);
    if (!error && access((folder / ".").c_str(), X_OK) != 0) {
        error.assign(errno, std::generic_category());
    }
    if (error) {
        throw std::runtime_error(root + ": " + fault(error) +
                                 "; name the folder that holds the checked-out repository");
    }
    return folder;
}

}  // namespace

std::vector<std::string> lines_of(std::string_view text) {
    LineSplitter splitter;
    splitter.add(text);
    return splitter.finish();
}

Checkout::Checkout(const std::string& root) : root_(folder_at(root)) {}

std::optional<std::string> Checkout::path_below(const std::string& path) const {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error).lexically_normal();
    // The path as given covers links inside the checkout; the resolved path covers links that lead to the checkout.
    for (const fs::path& spelling : {absolute, fs::weakly_canonical(absolute, error)}) {
        if (!spelling.empty() && contains(root_, spelling)) {
            std::string below = spelling.lexically_relative(root_).generic_string();
            below.resize(below.find_last_not_of('/') + 1);
            return below == "." ? "" : below;
        }
    }
    return std::nullopt;
}

std::optional<fs::path> Checkout::find(std::string_view path) const {
    if (!is_plain(path) || !stays_below(path)) {
        return std::nullopt;
    }
    fs::path file = root_ / path;
    const End end = end_of(file);
    if (end != End::UNKNOWN) {
        return end == End::REGULAR_FILE ? std::optional(file) : std::nullopt;
    }
    std::error_code error;
    file = fs::canonical(file, error);
    // Only regular files are opened, because opening a pipe waits for its writer.
    if (error || !contains(root_, file) || !fs::is_regular_file(file, error)) {
        return std::nullopt;
    }
    return file;
}

bool Checkout::leads_out(std::string_view path) const {
    if (!is_plain(path) || !stays_below(path)) {
        return false;
    }
    if (end_of(root_ / path) != End::UNKNOWN) {
        return false;
    }
    std::error_code error;
    const fs::path end = fs::canonical(root_ / path, error);
    return !error && !contains(root_, end);
}

std::optional<FileLines> Checkout::read_lines(std::string_view path) const {
    const std::optional<fs::path> file = find(path);
    ContentHash hash;
    LineSplitter splitter;
    const auto take = [&](std::string_view piece) {
        hash.add(piece);
        splitter.add(piece);
    };
    if (!file || !read_pieces(*file, take)) {
        return std::nullopt;
    }
    return FileLines{splitter.finish(), hash.value()};
}

std::optional<FileContent> Checkout::read(std::string_view path, std::size_t most) const {
    const std::optional<fs::path> file = find(path);
    ContentHash hash;
    std::string text;
    bool fits = true;
    const auto take = [&](std::string_view piece) {
        hash.add(piece);
        fits = fits && piece.size() <= most - text.size();
        if (fits) {
            text += piece;
        }
    };
    if (!file || !read_pieces(*file, take)) {
        return std::nullopt;
    }
    return FileContent{hash.value(), fits ? std::optional(std::move(text)) : std::nullopt};
}

}  // namespace host
