// Texts that screen readers read out at once, wherever the focus is. Main thread only.
#pragma once

#include <QObject>
#include <QString>

namespace pintle {

/// Whether the toolkit has announcements. Where it has none, a view shows a status item with the text to
/// assistive technology.
bool hasAnnouncements();

/// Announces `text` on behalf of `view`, an accessible item; nothing where the toolkit has no announcements.
void announce(QObject& view, const QString& text);

}  // namespace pintle
