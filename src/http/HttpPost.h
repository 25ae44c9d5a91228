// The program's one way to the network: a POST that is bounded in time and in what it reads back.
#pragma once

#include <chrono>
#include <functional>
#include <QByteArray>
#include <QString>
#include <QUrl>
#include <utility>
#include <vector>

namespace pointloom {

enum class HttpRedirects {
    none,        // a redirect is the answer
    toHttpsOnly, // followed to HTTPS, at most five times; one to plain HTTP fails
};

struct HttpPost {
    QUrl url;
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    HttpRedirects redirects = HttpRedirects::none;
    std::chrono::milliseconds timeout{30'000}; // from the call to the last byte of the answer
    qint64 largestReply = 64 * 1024;           // bytes
    std::function<bool()> isStopping = {};     // polled ten times a second; ends the request
};

struct HttpReply {
    int status = 0;          // 0: no answer came, and `failure` says why
    QByteArray body;         // at most `largestReply` bytes
    bool isComplete = false; // the whole body is here
    QString failure;         // in words; empty when the answer is complete
};

/// HTTPS to anywhere, or plain HTTP to this very machine.
bool isSecureOrLoopback(const QUrl& url);

/// Sends and waits, on a thread that may wait. Never throws for what the network does. Beside the headers
/// given it sends only what HTTP needs: no language, no cookies, no name of the operating system.
HttpReply send(const HttpPost& post);

}
