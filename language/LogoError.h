#pragma once

#include "language/SourcePlace.h"

#include <QString>
#include <QByteArray>
#include <exception>

// The language's only error: a message written for a child, shown unchanged, and the word of the
// program it is about (or where the missing piece was expected).
class LogoError : public std::exception
{
public:
    explicit LogoError(QString message, SourcePlace place = {})
        : m_message(std::move(message)), m_utf8(m_message.toUtf8()), m_place(place)
    {
    }

    const QString &message() const noexcept { return m_message; }
    QString errorDescription() const { return m_message; }
    const char *what() const noexcept override { return m_utf8.constData(); }
    SourcePlace place() const noexcept { return m_place; }

private:
    QString m_message;
    QByteArray m_utf8;
    SourcePlace m_place;
};
