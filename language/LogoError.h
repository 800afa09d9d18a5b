#pragma once

#include <QString>
#include <QByteArray>
#include <exception>

// The language's only error: a message written for a child, shown unchanged.
class LogoError : public std::exception
{
public:
    explicit LogoError(QString message) : m_message(std::move(message)), m_utf8(m_message.toUtf8()) {}

    const QString &message() const noexcept { return m_message; }
    QString errorDescription() const { return m_message; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_message;
    QByteArray m_utf8;
};
