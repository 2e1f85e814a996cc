// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TLogWindowController.h"

#include "commonprocs/TimeUtils.h"
#include "document/TErrorLog.h"

#include <QCoreApplication>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kContext = "TLogWindowController";
constexpr const char *kOfferedName = QT_TRANSLATE_NOOP("TLogWindowController", "Rename Log - %@");
constexpr const char *kNotSaved =
    QT_TRANSLATE_NOOP("TLogWindowController", "The log could not be saved");
constexpr QLatin1StringView kRtf{"rtf"};
constexpr QByteArrayView kRtfHead{
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern monospace;}}\n\\f0\\fs20\n"};
constexpr QByteArrayView kRtfTail{"\n}\n"};

void appendRtf(QByteArray &out, QChar unit)
{
    const char16_t code = unit.unicode();
    if (code == u'\n')
        out += "\\par\n";
    else if (code == u'\t')
        out += "\\tab ";
    else if (code == u'\\' || code == u'{' || code == u'}')
        (out += '\\') += static_cast<char>(code);
    else if (code >= 0x20 && code < 0x7F)
        out += static_cast<char>(code);
    else // RTF counts UTF-16 units as signed 16-bit numbers
        ((out += "\\u") += QByteArray::number(static_cast<qint16>(code))) += '?';
}

} // namespace

TLogWindowController::TLogWindowController(QString title, QString text, const Clock &clock)
    : m_title(std::move(title))
    , m_text(std::move(text))
    , m_clock(clock)
{
}

void TLogWindowController::save(TDialogHost &host) const
{
    const QString name = formatted(QCoreApplication::translate(kContext, kOfferedName),
                                   {TimeUtils::systemLongTime(m_clock.now())});
    host.chooseSaveFile({name, kRtf}, [&host, text = m_text](const std::optional<TFileURL> &url) {
        if (!url)
            return;
        if (const TResult<bool> written = writeRtf(text, *url); !written)
            host.ask({TDialogHost::Form::Alert,
                      QCoreApplication::translate(kContext, kNotSaved),
                      written.message(),
                      {},
                      {}});
    });
}

TResult<bool> TLogWindowController::writeRtf(const QString &text, const TFileURL &url)
{
    QSaveFile file(url.path());
    if (file.open(QIODevice::WriteOnly) && file.write(rtf(text)) >= 0 && file.commit())
        return true;
    return TResult<bool>::failure(file.errorString());
}

QByteArray TLogWindowController::rtf(const QString &text)
{
    QByteArray out(kRtfHead.toByteArray());
    out.reserve(out.size() + text.size() + text.size() / 8);
    for (const QChar unit : text)
        appendRtf(out, unit);
    return out += kRtfTail;
}
