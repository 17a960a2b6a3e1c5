#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include "core/app/UpdateManager.h"

namespace mirvel::ui {

/// Downloads over HTTPS only, including redirects. A download fails after 30 seconds without data, or when it exceeds a
/// mebibyte.
class HttpsDownloads final : public Downloads {
 public:
  explicit HttpsDownloads(const QSslConfiguration& configuration = QSslConfiguration::defaultConfiguration())
      : m_configuration(configuration) {}

  void get(const std::string& address, Reply reply) override;

 private:
  QSslConfiguration m_configuration;
  QNetworkAccessManager m_network;
};

}  // namespace mirvel::ui
