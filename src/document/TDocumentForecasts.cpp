// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentForecasts.h"

#include "document/NameGeneration.h"

namespace {

using Forecast = ForecastStepper::Forecast;

/// What comes between the name that is shown, without blanks around it, and its extension when that
/// is the number which a run puts there, or nothing.
std::optional<quint32> numberIn(const QString &finalName, QStringView base, QStringView extension)
{
    QStringView rest = finalName;
    if (rest.size() < base.size() + extension.size() || !rest.startsWith(base) ||
        !rest.endsWith(extension))
        return {};
    rest = rest.sliced(base.size()).chopped(extension.size());
    if (rest.isEmpty())
        return 0;
    const quint32 number = rest.startsWith(u'-') ? rest.sliced(1).toUInt() : 0;
    if (number == 0 || rest.sliced(1) != QString::number(number))
        return {};
    return number;
}

} // namespace

void TDocumentForecasts::clear()
{
    m_numbers.clear();
    m_others.clear();
}

void TDocumentForecasts::remove(const TFileObject &file)
{
    m_numbers.remove(&file);
    m_others.remove(&file);
}

void TDocumentForecasts::insert(const TFileObject &file, const Forecast &forecast)
{
    remove(file);
    if (forecast.finalName.isNull() || file.hasBeenProcessed())
        return;
    const QString &shown = file.attributedTargetName().string();
    const QString base = NameGeneration::postProcessFull(shown);
    if (!forecast.unchanged && forecast.refusal.isEmpty()) {
        const auto number =
            numberIn(forecast.finalName, base, NameGeneration::wantedExtension(file));
        if (number == 0 && base.size() == shown.size())
            return;
        if (number) {
            m_numbers.insert(&file, *number);
            return;
        }
    }
    m_others.insert(&file, forecast);
}

void TDocumentForecasts::insertOutcome(const TFileObject &file, const QString &failure)
{
    remove(file);
    if (failure.isEmpty())
        m_failures.remove(&file);
    else
        m_failures.insert(&file, failure);
}

std::optional<Forecast> TDocumentForecasts::find(const TFileObject &file) const
{
    if (file.hasBeenProcessed()) {
        const TFileURL target = file.targetURL();
        if (!target.isValid())
            return {};
        return Forecast{target.lastPathComponent(), m_failures.value(&file), false};
    }
    if (const auto other = m_others.constFind(&file); other != m_others.cend())
        return *other;
    const auto number = m_numbers.constFind(&file);
    if (number == m_numbers.cend())
        return {};
    QString name = NameGeneration::postProcessFull(file.attributedTargetName().string());
    if (*number > 0)
        name += u'-' + QString::number(*number);
    return Forecast{name + NameGeneration::wantedExtension(file), {}, false};
}
