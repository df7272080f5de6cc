#pragma once

#include <QString>

#include <functional>

class QWidget;

/// Takes a picture of a widget under a name.
using SavePicture = std::function<bool(QWidget &shown, const QString &name)>;

/// Goes the way of the guide, from a capture that is just being saved to the picture of an answer, in a folder that is
/// the walk's own: it writes the capture in the layout of real-time saving, and the database. False where a step fails.
bool walkThroughCapture(const QString &folder, const SavePicture &save);
