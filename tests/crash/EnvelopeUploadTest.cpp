#include "crash/CrashEvent.h"
#include "support/LoopbackServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QElapsedTimer>

namespace pointloom {
namespace {

using namespace std::chrono_literals;
using test::httpAnswer;
using test::HttpRequest;
using test::LoopbackServer;
using testing::HasSubstr;
using testing::StartsWith;

const QByteArray someEnvelope = "{}\n{}\n{}\n";

struct Result {
    std::string console;
    qint64 milliseconds;
};

// Uploads to `url` and returns what was printed.
Result upload(
    const QUrl& url, std::chrono::milliseconds timeout = 10s,
    const std::function<bool()>& isStopping = [] { return false; }) {
    QElapsedTimer clock;
    clock.start();
    testing::internal::CaptureStderr();
    uploadEnvelope(someEnvelope, {url, QStringLiteral("key"), QStringLiteral("https://key@h/42")}, isStopping,
                   timeout);
    return {testing::internal::GetCapturedStderr(), clock.elapsed()};
}

TEST(EnvelopeUpload, PostsTheEnvelopeWithItsHeadersAndNothingAboutThePerson) {
    LoopbackServer server([](const HttpRequest&) { return httpAnswer(200, "{}"); });
    EXPECT_EQ(upload(server.url(QStringLiteral("/api/42/envelope/"))).console, "");
    ASSERT_EQ(server.requests().size(), 1U);
    HttpRequest request = server.requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/api/42/envelope/");
    EXPECT_EQ(request.body, someEnvelope);
    EXPECT_EQ(request.headers["content-type"], "application/x-sentry-envelope");
    EXPECT_EQ(request.headers["x-sentry-auth"],
              "Sentry sentry_version=7, sentry_key=key, sentry_client=pointloom/1.0");
    EXPECT_EQ(request.headers["accept-language"], "*");
    EXPECT_EQ(request.headers.count("cookie"), 0U);
}

TEST(EnvelopeUpload, OnlyStatus200IsSuccess) {
    for (const int status : {201, 204, 400, 401, 429, 500}) {
        LoopbackServer server([&](const HttpRequest&) { return httpAnswer(status); });
        EXPECT_EQ(upload(server.url(QStringLiteral("/"))).console,
                  "[CrashReporter] Sentry returned HTTP " + std::to_string(status) + "\n");
        EXPECT_EQ(server.requests().size(), 1U) << "there is no retry";
    }
}

TEST(EnvelopeUpload, ARedirectToPlainHttpIsNotFollowed) {
    LoopbackServer target([](const HttpRequest&) { return httpAnswer(200); });
    for (const int status : {301, 302, 303, 307, 308}) {
        LoopbackServer server([&](const HttpRequest&) {
            return httpAnswer(status, {},
                              "Location: " + target.url(QStringLiteral("/x")).toEncoded() + "\r\n");
        });
        EXPECT_EQ(upload(server.url(QStringLiteral("/"))).console,
                  "[CrashReporter] Sentry returned HTTP " + std::to_string(status) + "\n");
    }
    EXPECT_TRUE(target.requests().empty());
}

TEST(EnvelopeUpload, AServerThatHangsOrDripsIsGivenUp) {
    LoopbackServer silent([](const HttpRequest&) { return QByteArray(); });
    const Result result = upload(silent.url(QStringLiteral("/")), 300ms);
    EXPECT_EQ(result.console, "[CrashReporter] send failed: no answer in time\n");
    EXPECT_LT(result.milliseconds, 5000);
}

TEST(EnvelopeUpload, StoppingEndsAnUploadAtOnce) {
    LoopbackServer silent([](const HttpRequest&) { return QByteArray(); });
    const Result result = upload(silent.url(QStringLiteral("/")), 30s, [] { return true; });
    EXPECT_THAT(result.console, StartsWith("[CrashReporter] send failed: "));
    EXPECT_LT(result.milliseconds, 5000);
}

TEST(EnvelopeUpload, AHugeReplyIsNotReadToItsEnd) {
    LoopbackServer server([](const HttpRequest&) {
        // Announces a gigabyte: only an upload that stops early ends in time.
        return QByteArray("HTTP/1.1 500 No\r\nContent-Length: 1000000000\r\n\r\n") + QByteArray(1 << 20, 'x');
    });
    const Result result = upload(server.url(QStringLiteral("/")), 20s);
    EXPECT_EQ(result.console, "[CrashReporter] Sentry returned HTTP 500\n");
    EXPECT_LT(result.milliseconds, 10'000);
}

TEST(EnvelopeUpload, NoServerOrNoHttpIsOneLineOnTheConsole) {
    QUrl closed;
    {
        closed = LoopbackServer([](const HttpRequest&) { return QByteArray(); }).url(QStringLiteral("/"));
    }
    EXPECT_THAT(upload(closed).console, StartsWith("[CrashReporter] send failed: "));
    LoopbackServer garbage([](const HttpRequest&) { return QByteArray("SSH-2.0-OpenSSH\r\n\r\n"); });
    EXPECT_THAT(upload(garbage.url(QStringLiteral("/"))).console, HasSubstr("[CrashReporter] "));
}

}
}
