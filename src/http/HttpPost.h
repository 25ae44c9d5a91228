// The program's only access to the network: a POST with a limit of time and of the answer's size.
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
    int status = 0;          // 0: no answer; `failure` has the reason
    QByteArray body;         // at most `largestReply` bytes
    bool isComplete = false; // the whole body is here
    QString failure;         // in words; empty when the answer is complete
};

/// True for HTTPS, and for plain HTTP to this machine.
bool isSecureOrLoopback(const QUrl& url);

/// Sends and blocks until the answer. Errors of the network are not thrown but returned. Only the given
/// headers and those that HTTP needs are sent: no language, no cookies, no name of the operating system.
HttpReply send(const HttpPost& post);

}
