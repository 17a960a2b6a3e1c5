#include "ui/support/HttpsDownloads.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr qint64 largest = 1 << 20;
constexpr int longestMilliseconds = 30000;

Result<std::string> contentOf(QNetworkReply& reply) {
  const auto failed = [&](Error::Code code, const QString& why) {
    return Error{.code = code, .message = utf8(why), .file = utf8(reply.url().toString())};
  };
  if (reply.bytesAvailable() > largest)
    return failed(Error::Code::LimitExceeded, QStringLiteral("it is larger than a mebibyte"));
  if (reply.error() != QNetworkReply::NoError) return failed(Error::Code::Io, reply.errorString());
  return reply.readAll().toStdString();
}

}  // namespace

void HttpsDownloads::get(const std::string& address, Reply reply) {
  const QUrl url(qt(address), QUrl::StrictMode);
  if (url.scheme() != QStringLiteral("https")) {
    return reply(
        Error{.code = Error::Code::BadArgument, .message = "the address isn't an HTTPS address", .file = address});
  }
  QNetworkRequest request(url);
  request.setSslConfiguration(m_configuration);
  request.setTransferTimeout(longestMilliseconds);
  // Redirects to plain HTTP fail, and no cookie identifies the user.
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  QNetworkReply* download = m_network.get(request);
  QObject::connect(download, &QNetworkReply::readyRead, download, [download] {
    if (download->bytesAvailable() > largest) download->abort();
  });
  QObject::connect(download, &QNetworkReply::finished, &m_network, [download, reply = std::move(reply)] {
    reply(contentOf(*download));
    download->deleteLater();
  });
}

}  // namespace mirvel::ui
