#include "Views/Equaliser/EQView.h"

#include "Services/Equaliser/Equalizer.h"

#include <QRegularExpression>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QString leftToRight(const QString &text)
{
    constexpr QChar leftToRightIsolate(0x2066);
    constexpr QChar popIsolate(0x2069);
    return leftToRightIsolate + text + popIsolate;
}

} // namespace

EQView::EQView(QObject *parent)
    : EQView(Equalizer::shared(), parent)
{
}

EQView::EQView(Equalizer &equalizer, QObject *parent)
    : QObject(parent)
    , m_equalizer(equalizer)
{
    connect(&m_equalizer, &Equalizer::enabledChanged, this, &EQView::enabledChanged);
    connect(&m_equalizer, &Equalizer::enabledChanged, this, &EQView::movableChanged);
    connect(&m_equalizer, &Equalizer::selectedPresetChanged, this, &EQView::presetChanged);
    connect(&m_equalizer, &Equalizer::selectedPresetChanged, this, &EQView::movableChanged);
    connect(&m_equalizer, &Equalizer::gainsChanged, this, &EQView::gainsChanged);
}

bool EQView::isEnabled() const
{
    return m_equalizer.isEnabled();
}

void EQView::setEnabled(bool enabled)
{
    m_equalizer.setEnabled(enabled);
}

QString EQView::presetLabel() const
{
    return u"حالت: "_s + m_equalizer.selectedPreset();
}

QString EQView::selectedPreset() const
{
    return m_equalizer.selectedPreset();
}

QStringList EQView::presetNames()
{
    QStringList names;
    for (const auto &preset : EQPreset::all)
        names.append(preset.name);
    return names;
}

QStringList EQView::bandLabels()
{
    QStringList labels;
    for (const auto label : eqBandLabels)
        labels.append(label.toString());
    return labels;
}

QList<qreal> EQView::gains() const
{
    return m_equalizer.gainList();
}

qreal EQView::lowestGain()
{
    return eqLowestGain;
}

qreal EQView::highestGain()
{
    return eqHighestGain;
}

bool EQView::areBandsMovable() const
{
    return m_equalizer.isEnabled() && m_equalizer.selectedPreset() == EQPreset::customName;
}

QString EQView::footer()
{
    return QString::asprintf(
        "از %.0fhrtz تا %.0f — بهصورت زنده روی پخش اعمال میشود؛ دامنه از −%.0f تا +%.0f دسیبل",
        eqBandCentres.front(), eqBandCentres.back(), double(-eqLowestGain), double(eqHighestGain));
}

QString EQView::shownFooter()
{
    static const QRegularExpression signedNumber(u"[−+]\\d+"_s);
    QString shown;
    qsizetype end = 0;
    const auto text = footer();
    for (const auto &number : signedNumber.globalMatch(text)) {
        shown += text.sliced(end, number.capturedStart() - end) + leftToRight(number.captured());
        end = number.capturedEnd();
    }
    return shown + text.sliced(end);
}

QString EQView::gainText(qreal gain)
{
    return leftToRight(QString::asprintf("%+.0f", gain));
}

void EQView::choosePreset(int index)
{
    m_equalizer.applyPreset(EQPreset::all.at(index));
}

void EQView::setGain(int index, qreal gain)
{
    m_equalizer.setGain(index, float(gain));
}

} // namespace navorin
