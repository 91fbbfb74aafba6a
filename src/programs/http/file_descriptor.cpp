#include "programs/http/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tralio {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (m_number >= 0)
        close(m_number);
}

FileDescriptor FileDescriptor::duplicateOf(int number) {
    return FileDescriptor(fcntl(number, F_DUPFD_CLOEXEC, 3));
}

int FileDescriptor::release() {
    return std::exchange(m_number, -1);
}

}  // namespace tralio
