#include "MemoryFile.h"

#include <cerrno>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace pointloom::fuzz {

namespace {

[[noreturn]] void throwSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}

MemoryFile::MemoryFile()
    : m_descriptor(memfd_create("input", MFD_CLOEXEC)) {
    if (m_descriptor < 0)
        throwSystemError("memfd_create");
}

MemoryFile::~MemoryFile() {
    close(m_descriptor);
}

void MemoryFile::replace(QByteArrayView content) {
    if (ftruncate(m_descriptor, 0) != 0)
        throwSystemError("ftruncate");
    for (qsizetype done = 0; done < content.size();) {
        const ssize_t written = pwrite(m_descriptor, content.data() + done,
                                       static_cast<std::size_t>(content.size() - done), done);
        if (written < 0)
            throwSystemError("pwrite");
        done += written;
    }
}

QString MemoryFile::path() const {
    return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
}

}
