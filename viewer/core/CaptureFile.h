#pragma once

#include "viewer/core/CaptureStream.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

class Findings;

/// Opens files of every kind that the table of formats has.
class CaptureFile
{
    Q_DECLARE_TR_FUNCTIONS(CaptureFile)

public:
    /// The kind is taken from what the file begins with and, where nothing recognises that, from the path's ending.
    /// findings must outlive the stream. Null with a message in the user's language in error.
    static std::unique_ptr<CaptureStream> open(const QString &path, Findings &findings, QString &error);
};
