// A process that dies in the way its argument names. What it leaves behind is read by CrashCaptureTest.
#include "crash/CrashCapture.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <thread>

namespace victim {

struct Silent : std::exception {
    const char* what() const noexcept override { return ""; }
};

[[gnu::noinline]] void throwNoWords() {
    throw std::runtime_error("no words");
}

struct Unspeakable : std::exception {
    const char* what() const noexcept override {
        throwNoWords();
        return nullptr;
    }
};

[[gnu::noinline]] void throwFromDeepInside() {
    throw std::runtime_error("the ball \"left\"\nthe court\x01");
}

[[gnu::noinline]] void writeNearNull() {
    // Near it and through an integer, so that neither compiler nor sanitizer sees it coming.
    volatile std::uintptr_t nowhere = 16;
    *reinterpret_cast<volatile char*>(nowhere) = 1; // NOLINT
}

void readPastTheEndOfAFile() {
    std::FILE* file = std::tmpfile();
    constexpr std::size_t page = 4096;
    void* memory = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_SHARED, fileno(file), 0);
    *static_cast<volatile char*>(memory) = 1;
}

void executeAnIllegalInstruction() {
    __builtin_trap();
}

// glibc notices inside of malloc, with its own lock held: a handler that allocates would wait for ever.
void corruptTheHeap() {
    volatile std::size_t blockSize = 24; // unknown to the compiler, which would refuse what comes
    auto* block = static_cast<volatile char*>(std::malloc(blockSize));
    for (int i = 24; i < 4096; ++i)
        block[i] = '\x41';
    for (std::size_t size = 24; size < 1 << 20; size *= 2) {
        void* volatile next = std::malloc(size);
        std::free(next);
    }
}

[[gnu::noinline]] int recurse(int depth) {
    std::array<char, 4096> frame{};
    volatile char* bytes = frame.data();
    bytes[static_cast<std::size_t>(depth) % frame.size()] = 1;
    return depth < 0 ? bytes[0] : recurse(depth + 1) + bytes[1];
}

void throwAtLength() {
    std::string reason;
    for (int i = 0; i < 1'000'000; ++i)
        reason += "oh ";
    throw std::runtime_error(reason);
}

void inAThread(void (*die)()) {
    std::thread(die).join();
}

const std::map<std::string, std::function<void()>> deaths{
    {"abort", [] { std::abort(); }},
    {"null", writeNearNull},
    {"illegal", executeAnIllegalInstruction},
    {"bus", readPastTheEndOfAFile},
    {"null-in-thread", [] { inAThread(writeNearNull); }},
    {"corrupted-heap", corruptTheHeap},
    {"exception", throwFromDeepInside},
    {"exception-in-thread", [] { inAThread(throwFromDeepInside); }},
    {"silent-exception", [] { throw Silent(); }},
    {"unspeakable-exception", [] { throw Unspeakable(); }},
    {"talkative-exception", throwAtLength},
    {"number", [] { throw 42; }},
    {"forgotten-thread",
     [] { const std::thread thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }); }},
    {"stack-overflow", [] { std::printf("%d", recurse(0)); }},
    {"terminate-request", [] { std::raise(SIGTERM); }},
    {"interrupt", [] { std::raise(SIGINT); }},
    {"end", [] {}},
};

}

int main(int, char** argv) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    pointloom::CrashCapture::prepareCrashFilePath();
    pointloom::CrashCapture::installHandlers();
    pointloom::CrashCapture::installHandlers(); // once or twice is the same
    victim::deaths.at(argv[1])();
    return 0;
}
