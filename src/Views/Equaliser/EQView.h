#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class Equalizer;

/// The equaliser's sheet. Making it makes the equaliser, from when on the saved settings are heard.
class EQView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(EQViewState)
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString presetLabel READ presetLabel NOTIFY presetChanged)
    Q_PROPERTY(QString selectedPreset READ selectedPreset NOTIFY presetChanged)
    Q_PROPERTY(QStringList presetNames READ presetNames CONSTANT)
    Q_PROPERTY(QStringList bandLabels READ bandLabels CONSTANT)
    Q_PROPERTY(QList<qreal> gains READ gains NOTIFY gainsChanged)
    Q_PROPERTY(qreal lowestGain READ lowestGain CONSTANT)
    Q_PROPERTY(qreal highestGain READ highestGain CONSTANT)
    /// The bands can be moved by hand: only from settings that were made by hand.
    Q_PROPERTY(bool areBandsMovable READ areBandsMovable NOTIFY movableChanged)
    Q_PROPERTY(QString footer READ footer CONSTANT)
    /// The same, with marks that keep each sign on the left of its number.
    Q_PROPERTY(QString shownFooter READ shownFooter CONSTANT)
public:
    explicit EQView(QObject *parent = nullptr);
    explicit EQView(Equalizer &equalizer, QObject *parent = nullptr);

    [[nodiscard]] bool isEnabled() const;
    void setEnabled(bool enabled);
    [[nodiscard]] QString presetLabel() const;
    [[nodiscard]] QString selectedPreset() const;
    [[nodiscard]] static QStringList presetNames();
    [[nodiscard]] static QStringList bandLabels();
    /// Decibels, band by band.
    [[nodiscard]] QList<qreal> gains() const;
    [[nodiscard]] static qreal lowestGain();
    [[nodiscard]] static qreal highestGain();
    [[nodiscard]] bool areBandsMovable() const;
    [[nodiscard]] static QString footer();
    [[nodiscard]] static QString shownFooter();

    /// Whole decibels with their sign, to be read from left to right wherever they stand.
    Q_INVOKABLE static QString gainText(qreal gain);
    /// `index` into `presetNames`.
    Q_INVOKABLE void choosePreset(int index);
    Q_INVOKABLE void setGain(int index, qreal gain);

Q_SIGNALS:
    void enabledChanged();
    void presetChanged();
    void gainsChanged();
    void movableChanged();

private:
    Equalizer &m_equalizer;
};

} // namespace navorin
