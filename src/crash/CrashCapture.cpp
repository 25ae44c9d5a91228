#include "crash/CrashCapture.h"

#include "crash/CrashReporterGlobals.h"
#include "crash/PendingCrashReport.h"
#include "json/JsonDocument.h"

#include <array>
#include <csignal>
#include <cstring>
#include <ctime>
#include <cxxabi.h>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <memory>
#include <QDateTime>
#include <QDir>
#include <QSaveFile>
#include <QStandardPaths>
#include <unistd.h>

namespace pointloom::CrashCapture {

namespace {

using MallocedText = std::unique_ptr<char, decltype(&std::free)>;

QString demangled(const char* mangled) {
    int status = 0;
    const MallocedText text(abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(status == 0 ? text.get() : mangled);
}

// "program(_ZN4nameEv+0x12) [0x55...]" with the mangled name replaced by the written one.
QString readableFrame(const char* symbol) {
    const QString line = QString::fromUtf8(symbol);
    const qsizetype open = line.indexOf(u'(');
    const qsizetype plus = line.indexOf(u'+', open);
    if (open < 0 || plus <= open + 1)
        return line;
    const QByteArray name = line.mid(open + 1, plus - open - 1).toUtf8();
    return line.left(open + 1) + demangled(name.constData()) + line.mid(plus);
}

std::vector<QString> callStack() {
    std::array<void*, 128> addresses{};
    const int count = backtrace(addresses.data(), static_cast<int>(addresses.size()));
    const std::unique_ptr<char*, decltype(&std::free)> symbols(backtrace_symbols(addresses.data(), count), &std::free);
    std::vector<QString> lines;
    for (int i = 0; symbols && i < count; ++i)
        lines.push_back(readableFrame(symbols.get()[i]));
    return lines;
}

void describeException(PendingCrashReport& report) {
    if (const std::type_info* type = abi::__cxa_current_exception_type())
        report.exceptionName = demangled(type->name());
    try {
        throw;
    } catch (const std::exception& error) {
        report.exceptionReason = QString::fromUtf8(error.what());
    } catch (...) {
        // Anything can be thrown; what is no std::exception has no reason.
    }
}

void writeExceptionRecord() {
    PendingCrashReport report;
    report.timestamp = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    report.callStack = callStack();
    describeException(report);
    QSaveFile file(crashFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(json::compact(json::encode(report)));
    file.commit();
}

[[noreturn]] void handleUncaughtException() {
    if (std::current_exception()) {
        try {
            writeExceptionRecord();
        } catch (...) {
            // Nothing more can be done for a process that is out of memory.
        }
        // The abort that follows is this exception's end, not a crash of its own.
        std::signal(SIGABRT, SIG_DFL);
    }
    std::abort();
}

// Appends to a buffer of the handler's own stack: no heap, nothing that is not async-signal-safe.
class RecordText {
public:
    void append(const char* text) {
        while (*text != '\0' && m_length < m_text.size())
            m_text[m_length++] = *text++;
    }

    void append(long long number) {
        std::array<char, 24> digits{};
        std::size_t count = 0;
        auto rest = static_cast<unsigned long long>(number < 0 ? -number : number);
        do {
            digits[count++] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        } while (rest != 0);
        if (number < 0)
            digits[count++] = '-';
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
    text.append(static_cast<long long>(std::time(nullptr)));
    text.append("\",\"signal\":");
    text.append(static_cast<long long>(number));
    text.append("}\n");
    CrashReporterGlobals::withCrashFilePathBuffer([&](const char* path) {
        if (*path == '\0')
            return;
        constexpr mode_t readableByAll = 0644;
        const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC, readableByAll);
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
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Pointloom"));
    folder.mkpath(QStringLiteral("."));
    return folder.filePath(QStringLiteral("pending_crash.json"));
}

void prepareCrashFilePath() {
    CrashReporterGlobals::setCrashFilePath(crashFilePath().toStdString());
}

void installHandlers() {
    // The first backtrace loads a library, which must not happen in a dying process.
    std::array<void*, 1> warmUp{};
    backtrace(warmUp.data(), static_cast<int>(warmUp.size()));
    std::set_terminate(handleUncaughtException);
    for (const int number : {SIGABRT, SIGSEGV, SIGILL, SIGBUS})
        std::signal(number, handleFatalSignal);
}

}
