#pragma once

#include "Models/JsonReader.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <optional>

namespace navorin {

/// The client's own failures: a bad status, or an answer that lacks what the call needs.
class APIError : public std::exception
{
public:
    enum class Case { Http, BadUrl, Decoding };

    /// `code` is the HTTP status, or -1 for something that answered without speaking HTTP.
    [[nodiscard]] static APIError http(int code) { return {Case::Http, code}; }
    [[nodiscard]] static APIError badUrl() { return {Case::BadUrl, 0}; }
    [[nodiscard]] static APIError decoding() { return {Case::Decoding, 0}; }

    /// The Persian text for a person.
    [[nodiscard]] QString description() const;
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

    friend bool operator==(const APIError &a, const APIError &b)
    {
        return a.m_case == b.m_case && a.m_code == b.m_code;
    }

private:
    APIError(Case kind, int code);

    Case m_case;
    int m_code;
    QByteArray m_what;
};

/// A refusal in the server's own words, which reach the user unchanged.
class ServerError : public std::exception
{
public:
    ServerError(QString message, qint64 code);

    [[nodiscard]] const QString &message() const { return m_message; }
    [[nodiscard]] qint64 code() const { return m_code; }
    [[nodiscard]] const QString &description() const { return m_message; }
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    QString m_message;
    qint64 m_code;
    QByteArray m_what;
};

/// The shape of every error body, and of answers of which only the success counts.
struct SimpleMessage
{
    std::optional<qint64> code;
    std::optional<QString> message;
};

void read(json::Value &value, SimpleMessage &message);

/// What a screen shows of a failure: the server's words, or a text of ours.
[[nodiscard]] QString errorDescription(const std::exception &error);
[[nodiscard]] QString errorDescription(const std::exception_ptr &error);

} // namespace navorin
