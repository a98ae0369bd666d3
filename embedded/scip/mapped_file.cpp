#include "embedded/scip/mapped_file.h"

#include "embedded/scip/file_descriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace embedded::scip {

MappedFile::MappedFile(const std::string& path) : path_(path) {
    // Not to wait for a writer, should the file be a pipe.
    const FileDescriptor file(path, O_RDONLY | O_NONBLOCK);
    if (!file.is_open() && errno == ENOENT) {
        throw std::runtime_error(path + ": no such file; give the file that a SCIP indexer has written");
    }
    struct stat status {};
    if (!file.is_open() || fstat(file.number(), &status) != 0) {
        throw std::runtime_error(path + ": cannot be opened (" + last_system_error() +
                                 "); check its permissions and those of its folder");
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error(path + ": not a regular file; give the file that a SCIP indexer has written");
    }
    size_ = static_cast<std::size_t>(status.st_size);
    if (size_ == 0) {
        return;  // nothing can be mapped
    }
    void* const address = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (address == MAP_FAILED) {
        throw std::runtime_error(path + ": cannot be read (" + last_system_error() +
                                 "); check that it is an ordinary file on a disk");
    }
    address_ = address;
}

MappedFile::~MappedFile() {
    if (address_ != nullptr) {
        munmap(address_, size_);
    }
}

void MappedFile::release(std::string_view bytes) const noexcept {
    // Whole pages only: what shares a page with the ends may be in use.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto offset = static_cast<std::size_t>(bytes.data() - static_cast<const char*>(address_));
    const std::size_t begin = (offset + page - 1) / page * page;
    const std::size_t end = (offset + bytes.size()) / page * page;
    if (begin < end) {
        madvise(static_cast<char*>(address_) + begin, end - begin, MADV_DONTNEED);
    }
}

}  // namespace embedded::scip
