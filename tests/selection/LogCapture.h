#pragma once

#include <QLoggingCategory>
#include <QString>

#include <string>
#include <vector>

namespace snapvane::testing {

/// Collects everything that is logged while it exists. One at a time; main thread.
class LogCapture {
public:
    struct Line {
        QtMsgType type;
        std::string category;
        std::string text;
    };

    LogCapture() { s_lines.clear(), m_before = qInstallMessageHandler(handle); }
    ~LogCapture() { qInstallMessageHandler(m_before); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<Line>& lines() const { return s_lines; }
    /// The texts at error level.
    std::vector<std::string> errors() const { return texts(QtCriticalMsg); }
    std::vector<std::string> texts(QtMsgType type) const {
        std::vector<std::string> result;
        for (const Line& line : s_lines) {
            if (line.type == type) {
                result.push_back(line.text);
            }
        }
        return result;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        s_lines.push_back(
            {type, context.category == nullptr ? "" : context.category, text.toStdString()});
    }

    static inline std::vector<Line> s_lines;
    QtMessageHandler m_before = nullptr;
};

} // namespace snapvane::testing
