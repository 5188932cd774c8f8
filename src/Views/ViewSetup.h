#pragma once

class QQmlEngine;

namespace navorin {

/// Brings what the screens draw with into `engine`: fonts and symbols. Once, after the application
/// object is made and before the first screen is loaded.
void prepareViews(QQmlEngine &engine);

} // namespace navorin
