#pragma once

#include "Services/Equaliser/EQPreset.h"
#include "Services/SharedInstance.h"

#include <QObject>

namespace navorin {

class UserDefaults;

/// What the user has set on the equaliser. Knows nothing of sound: every write goes to the user defaults and
/// from there to `eqSnapshotStore()`, at once, and is heard with the next buffer.
///
/// Made when the equaliser's sheet is first built and not earlier, so that saved settings are heard from then
/// on. UI thread only.
class Equalizer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(
        QString selectedPreset READ selectedPreset WRITE setSelectedPreset NOTIFY selectedPresetChanged)
    Q_PROPERTY(QList<qreal> gains READ gainList NOTIFY gainsChanged)

public:
    static Equalizer &shared();

    /// The filters are applied.
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    /// The name of a preset, or `EQPreset::customName` after a change by hand.
    [[nodiscard]] const QString &selectedPreset() const { return m_selectedPreset; }
    void setSelectedPreset(QString name);

    [[nodiscard]] const EqGains &gains() const { return m_gains; }
    [[nodiscard]] QList<qreal> gainList() const { return {m_gains.begin(), m_gains.end()}; }
    void setGains(const EqGains &gains);

    /// Takes over name and gains, and turns the equaliser on.
    void applyPreset(const EQPreset &preset);

    /// One band by hand; the preset becomes the custom one. `value` in decibels is held within what a band
    /// can do. An index that no band has is fatal.
    Q_INVOKABLE void setGain(int index, float value);

Q_SIGNALS:
    void enabledChanged();
    void selectedPresetChanged();
    void gainsChanged();

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    explicit Equalizer(UserDefaults &defaults);
    static SharedInstance<Equalizer> &instance();

    void persist();
    void publish() const;

    UserDefaults &m_defaults;
    bool m_enabled;
    QString m_selectedPreset;
    EqGains m_gains;
};

} // namespace navorin
