#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>

#include <optional>

namespace snapvane {

/// The user's preferences: a persistent store of named values with typed access. Every write
/// reaches the file at once. The getters undo what the file format loses: an on/off value read back
/// as text, a list of one element read back as plain text, an empty list read back as nothing.
///
/// A damaged file is kept aside under the name of the file plus ".bak" and a log line tells of it;
/// what could still be read of it stays in force. Main thread.
class UserDefaults {
public:
    /// The store in the given file; the file and its folder are made by the first write.
    explicit UserDefaults(const QString& path);

    /// The program's own store: Snapvane/Snapvane.conf under the user's configuration folder.
    static UserDefaults& standard();

    /// True when there is a value of any type under the key.
    bool contains(const QString& key) const;
    /// The value as on or off: numbers other than zero, "true" and "yes" are on; anything else, an
    /// absent value included, is off.
    bool boolean(const QString& key) const;
    /// The value as a number; 0 when it is absent or is none.
    double number(const QString& key) const;
    /// The value as text; nothing when it is absent, a list of several elements or no text at all.
    std::optional<QString> string(const QString& key) const;
    /// The value as a list of texts; nothing when it is absent.
    std::optional<QStringList> stringArray(const QString& key) const;

    void set(const QString& key, bool value);
    void set(const QString& key, double value);
    void set(const QString& key, const QString& value);
    void set(const QString& key, const char* value) = delete;
    void set(const QString& key, const QStringList& value);
    void remove(const QString& key);

private:
    void keepDamagedFileAside();
    void write(const QString& key, const QVariant& value);
    void flush();

    QSettings m_settings;
};

} // namespace snapvane
