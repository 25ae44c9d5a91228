#include "http/HttpPost.h"

#include <memory>
#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>
#include <QTimer>

namespace pointloom {

namespace {

constexpr int pollMilliseconds = 100;
constexpr int mostRedirects = 5;

QNetworkRequest requestOf(const HttpPost& post) {
    QNetworkRequest request(post.url);
    // The library would add the desktop's language and a browser's name.
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("User-Agent", "pointloom/1.0");
    for (const auto& [name, value] : post.headers)
        request.setRawHeader(name, value);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         post.redirects == HttpRedirects::none ? QNetworkRequest::ManualRedirectPolicy
                                                               : QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    return request;
}

// Waits for one reply on the calling thread.
class Exchange {
public:
    explicit Exchange(const HttpPost& post)
        : m_post(post)
        , m_network(std::make_unique<QNetworkAccessManager>())
        , m_reply(m_network->post(requestOf(post), post.body)) {
        m_reply->setReadBufferSize(post.largestReply + 1);
        QObject::connect(m_reply, &QNetworkReply::readyRead, &m_loop, [this] { readSome(); });
        QObject::connect(m_reply, &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
        QObject::connect(m_reply, &QNetworkReply::redirected, &m_loop, [this](const QUrl& to) {
            if (to.scheme() == u"https")
                Q_EMIT m_reply->redirectAllowed();
            else
                giveUp(QStringLiteral("the server redirects to an address that is not secure"));
        });
    }

    // The library's thread does not end while a server sends a header without end, and the library waits five
    // seconds for it: a request that was given up ends on a thread of its own, or with the program.
    ~Exchange() {
        if (m_failure.isEmpty())
            return;
        m_reply->disconnect();
        QThread* end = QThread::create([network = m_network.get()] { delete network; });
        m_network.release()->moveToThread(end);
        end->start();
        constexpr unsigned long usualTime = 200; // ms
        if (end->wait(usualTime))
            delete end;
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    HttpReply wait() {
        QTimer deadline;
        deadline.setSingleShot(true);
        QObject::connect(&deadline, &QTimer::timeout, &m_loop,
                         [this] { giveUp(QStringLiteral("no answer in time")); });
        deadline.start(m_post.timeout);
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &m_loop, [this] {
            if (m_post.isStopping && m_post.isStopping())
                giveUp(QStringLiteral("cancelled"));
        });
        poll.start(pollMilliseconds);
        if (!m_reply->isFinished())
            m_loop.exec();
        readSome();
        return answer();
    }

private:
    void readSome() {
        if (!m_failure.isEmpty())
            return;
        m_body += m_reply->read(m_post.largestReply + 1 - m_body.size());
        if (m_body.size() > m_post.largestReply) {
            m_body.truncate(m_post.largestReply);
            giveUp(QStringLiteral("the answer is too long"));
        }
    }

    // Aborting a reply that already has an error makes Qt complain.
    void giveUp(const QString& reason) {
        m_failure = reason;
        m_loop.quit();
    }

    HttpReply answer() const {
        HttpReply answer;
        answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        answer.body = m_body;
        answer.failure = m_failure;
        // An HTTP status that means failure is an answer, not a failure of the exchange.
        constexpr int firstContentError = QNetworkReply::ContentAccessDenied;
        if (answer.failure.isEmpty() && m_reply->error() != QNetworkReply::NoError &&
            (answer.status == 0 || m_reply->error() < firstContentError))
            answer.failure = m_reply->errorString();
        answer.isComplete = answer.status != 0 && answer.failure.isEmpty();
        return answer;
    }

    const HttpPost& m_post;
    QEventLoop m_loop;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QNetworkReply* m_reply; // owned by the manager
    QByteArray m_body;
    QString m_failure;
};

}

bool isSecureOrLoopback(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty())
        return false;
    const bool isThisMachine = url.host() == u"localhost" || QHostAddress(url.host()).isLoopback();
    return url.scheme() == u"https" || (url.scheme() == u"http" && isThisMachine);
}

HttpReply send(const HttpPost& post) {
    return Exchange(post).wait();
}

}
