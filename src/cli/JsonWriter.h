// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QStringView>
#include <QVarLengthArray>

class QJsonArray;
class QJsonObject;

/// Builds JSON text piece by piece, so that a document of a million files is never held as a whole:
/// the owner takes the bytes away whenever it likes. Commas are put where they belong.
class JsonWriter
{
public:
    JsonWriter &beginObject() { return open('{'); }
    JsonWriter &endObject() { return close('}'); }
    JsonWriter &beginArray() { return open('['); }
    JsonWriter &endArray() { return close(']'); }
    JsonWriter &key(QLatin1StringView name) { return key(QString(name)); }
    JsonWriter &key(const QString &name);

    JsonWriter &value(QStringView text);
    JsonWriter &value(qint64 number);
    JsonWriter &value(bool flag);
    JsonWriter &null();
    /// The text, or null when it is a null string.
    JsonWriter &valueOrNull(const QString &text);
    /// Any JSON value; nothing of it passes through Qt's writer.
    JsonWriter &json(const QJsonValue &value);
    /// Text that is JSON already; an element like any other.
    JsonWriter &raw(QByteArrayView json);
    /// A line break between elements, for people and for line-wise tools.
    JsonWriter &newLine();

    bool isEmpty() const { return m_bytes.isEmpty(); }
    const QByteArray &bytes() const { return m_bytes; }
    /// Forgets what was built so far, but not where in the document it stands.
    void clear() { m_bytes.resize(0); }

private:
    JsonWriter &array(const QJsonArray &array);
    JsonWriter &object(const QJsonObject &object);
    JsonWriter &open(char bracket);
    JsonWriter &close(char bracket);
    void separate();

    QByteArray m_bytes;
    QVarLengthArray<bool, 32> m_hasElements; ///< one a level
    bool m_afterKey = false;
    bool m_newLine = false;
};
