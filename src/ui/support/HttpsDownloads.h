#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include "core/app/UpdateManager.h"

namespace mirvel::ui {

/// Downloads over HTTPS alone, also where they are redirected to. A download ends after half a minute, and with more
/// than a mebibyte.
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
