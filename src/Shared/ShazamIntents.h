#pragma once

#include <QList>
#include <QStringList>

namespace navorin {

class UserDefaults;

/// Where a request for a recognition is left for the app: a time stamp in a suite of settings that both sides
/// share. The one who asks only writes it, the app reads and removes it.
namespace ShazamRequest {
inline const QString suite = QStringLiteral("group.ir.navorin.radio");
/// Seconds since 1970, as a double.
inline const QString key = QStringLiteral("shazamRequestAt");
/// Seconds; an older stamp is none.
constexpr double validity = 120;
} // namespace ShazamRequest

/// A place in the app that the desktop can lead to.
struct NavorinDestination
{
    QString id;

    [[nodiscard]] static QString typeDisplayName();
    [[nodiscard]] static QString displayTitle();
    [[nodiscard]] static QString urlRepresentation();

    bool operator==(const NavorinDestination &) const = default;
};

/// All the places there are: one.
struct NavorinDestinationQuery
{
    /// The same for whatever is asked.
    [[nodiscard]] static QList<NavorinDestination> entities(const QStringList &identifiers);
    [[nodiscard]] static QList<NavorinDestination> suggestedEntities();
};

/// "Recognise a song": leaves a request. Whoever runs it brings the app to the front afterwards.
struct ShazamAppIntent
{
    static constexpr bool openAppWhenRun = true;

    [[nodiscard]] static QString title();
    /// `suite` is the shared one, or null where it cannot be opened; then nothing is left, and nothing said.
    static void perform(UserDefaults *suite);
};

/// The same as a way to a place.
struct ShazamOpenIntent
{
    NavorinDestination target{QStringLiteral("shazam")};

    [[nodiscard]] static QString title() { return ShazamAppIntent::title(); }
    static void perform(UserDefaults *suite) { ShazamAppIntent::perform(suite); }
};

} // namespace navorin
