#include "crash/CrashCapture.h"

#include "crash/CrashEvent.h"
#include "json/JsonDocument.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <cxxabi.h>
#include <dlfcn.h>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <memory>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <span>
#include <typeinfo>
#include <unistd.h>
#include <utility>
#include <vector>

namespace pointloom {

namespace CrashReporterGlobals {

namespace {

std::array<char, crashFilePathSize> pathBuffer{};

}

void setCrashFilePath(std::string_view path) {
    const std::size_t length = std::min(path.size(), pathBuffer.size() - 1);
    std::copy_n(path.begin(), length, pathBuffer.begin());
    std::fill(pathBuffer.begin() + static_cast<std::ptrdiff_t>(length), pathBuffer.end(), '\0');
}

const char* crashFilePathBuffer() {
    return pathBuffer.data();
}

}

namespace CrashCapture {

namespace {

// UTF-16 units of a name or a reason, so that the record stays below what the next start reads.
constexpr qsizetype longestText = 4096;

using MallocedText = std::unique_ptr<char, decltype(&std::free)>;

QString demangled(const char* mangled) {
    int status = 0;
    const MallocedText text(abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(status == 0 ? text.get() : mangled);
}

// "/folder/program(_ZN4nameEv+0x12) [0x55...]" as "program(name()+0x12) [0x55...]": the folder may name the
// user who installed it. Mangled names hold no bracket, but a folder's name may.
QString readableFrame(const char* symbol) {
    QString line = QString::fromUtf8(symbol);
    line.remove(0, line.left(line.lastIndexOf(u'(')).lastIndexOf(u'/') + 1);
    const qsizetype open = line.lastIndexOf(u'(');
    const qsizetype plus = line.indexOf(u'+', open);
    if (open < 0 || plus <= open + 1)
        return line;
    const QByteArray name = line.mid(open + 1, plus - open - 1).toUtf8();
    return line.left(open + 1) + demangled(name.constData()).left(longestText) + line.mid(plus);
}

// Load address of the file that holds `address`; null for none.
const void* moduleOf(const void* address) {
    Dl_info facts{};
    return dladdr(address, &facts) != 0 ? facts.dli_fbase : nullptr;
}

// Number of innermost frames that belong to the capture and then to the language's runtime. They are the same
// for every exception, and collectors tell crashes apart by the innermost frame. `caller` called the capture.
int framesToLeaveOut(std::span<void* const> frames, const void* caller) {
    auto first = std::find(frames.begin(), frames.end(), caller);
    if (first == frames.end())
        return 0;
    const void* language = moduleOf(caller);
    if (language == moduleOf(reinterpret_cast<const void*>(&demangled))) // linked into the program itself
        return static_cast<int>(first - frames.begin());
    first = std::find_if(first, frames.end(), [&](const void* frame) { return moduleOf(frame) != language; });
    return first == frames.end() ? 0 : static_cast<int>(first - frames.begin());
}

std::vector<QString> callStack(const void* caller) {
    std::array<void*, PendingCrashReport::mostFrames> addresses{};
    const int count = backtrace(addresses.data(), static_cast<int>(addresses.size()));
    const std::unique_ptr<char*, decltype(&std::free)> symbols(backtrace_symbols(addresses.data(), count),
                                                               &std::free);
    std::vector<QString> lines;
    const std::span frames(addresses.data(), static_cast<std::size_t>(count));
    for (int i = framesToLeaveOut(frames, caller); symbols && i < count; ++i)
        lines.push_back(readableFrame(symbols.get()[i]));
    return lines;
}

void describeException(PendingCrashReport& report) {
    if (const std::type_info* type = abi::__cxa_current_exception_type())
        report.exceptionName = demangled(type->name()).left(longestText);
    try {
        throw;
    } catch (const std::exception& error) {
        if (const char* reason = error.what(); reason && *reason != '\0')
            report.exceptionReason = QString::fromUtf8(reason).left(longestText);
    } catch (...) {
        // A value of another type than std::exception has no reason.
    }
}

void writeExceptionRecord(const void* caller) {
    PendingCrashReport report;
    report.timestamp = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    report.callStack = callStack(caller);
    describeException(report);
    QSaveFile file(crashFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(json::compact(json::encode(report)));
    file.commit();
}

std::terminate_handler platformHandler = nullptr;

[[noreturn]] void handleUncaughtException() {
    // An exception whose own description throws comes here a second time.
    static thread_local bool isHandling = false;
    if (std::current_exception() && !std::exchange(isHandling, true)) {
        try {
            writeExceptionRecord(__builtin_return_address(0));
            // The abort that follows belongs to this exception.
            std::signal(SIGABRT, SIG_DFL);
        } catch (...) {
            // Out of memory: the abort leaves the record of a signal, which needs no heap.
        }
    }
    if (platformHandler)
        platformHandler(); // names the exception on the console, then aborts
    std::abort();
}

// Appends to a buffer of the handler's own stack: no heap, nothing that is not async-signal-safe.
class RecordText {
public:
    void append(const char* text) {
        while (*text != '\0' && m_length < m_text.size())
            m_text[m_length++] = *text++;
    }

    void append(unsigned long long number) {
        std::array<char, 20> digits{}; // the longest 64-bit number
        std::size_t count = 0;
        do {
            digits[count++] = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number != 0);
        while (count > 0 && m_length < m_text.size())
            m_text[m_length++] = digits[--count];
    }

    const char* data() const { return m_text.data(); }
    std::size_t length() const { return m_length; }

private:
    std::array<char, 128> m_text{};
    std::size_t m_length = 0;
};

extern "C" void handleFatalSignal(int number) {
    RecordText text;
    text.append("{\"timestamp\":\"");
    text.append(static_cast<unsigned long long>(std::time(nullptr)));
    text.append("\",\"signal\":");
    text.append(static_cast<unsigned long long>(number));
    text.append("}\n");
    CrashReporterGlobals::withCrashFilePathBuffer([&](const char* path) {
        if (*path == '\0')
            return;
        constexpr mode_t readableByAll = 0644;
        // Without O_NONBLOCK a pipe of that name would keep the process from ending.
        const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK, readableByAll);
        if (file < 0)
            return;
        [[maybe_unused]] const ssize_t written = ::write(file, text.data(), text.length());
        ::close(file);
    });
    std::signal(number, SIG_DFL);
    std::raise(number);
}

}

QString crashFilePath() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty())
        qFatal("This system names no folder for application data.");
    const QDir folder(data + QStringLiteral("/Pointloom"));
    folder.mkpath(QStringLiteral("."));
    return folder.filePath(QStringLiteral("pending_crash.json"));
}

void prepareCrashFilePath() {
    CrashReporterGlobals::setCrashFilePath(QFile::encodeName(crashFilePath()).toStdString());
}

void installHandlers() {
    // The first backtrace loads a library, which must not happen in a dying process.
    std::array<void*, 1> warmUp{};
    backtrace(warmUp.data(), static_cast<int>(warmUp.size()));
    if (const auto before = std::set_terminate(handleUncaughtException); before != handleUncaughtException)
        platformHandler = before;
    for (const int number : {SIGABRT, SIGSEGV, SIGILL, SIGBUS})
        std::signal(number, handleFatalSignal);
}

}

}
