#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace snapvane {

/// A failure with a text for the user. Every typed error of the program derives from it; whoever
/// shows or logs a failure needs nothing else.
class LocalizedError : public std::exception {
public:
    explicit LocalizedError(QString description)
        : m_description(std::move(description)), m_what(m_description.toStdString()) {}

    const QString& localizedDescription() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    QString m_description;
    std::string m_what;
};

} // namespace snapvane
