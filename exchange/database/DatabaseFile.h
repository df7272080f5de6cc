#pragma once

#include "exchange/database/Database.h"

#include <QByteArray>

/// Size of the largest database that is read, in bytes.
constexpr int MaxDatabaseSize = 32 << 20;

/// Of the text of a DBC or an LDF file; told apart by how it begins. encoding: see databaseText().
Database parseDatabase(const QByteArray &bytes, const QString &encoding = QString());
/// Nothing, and error in the user's language, where the file cannot be read or is too large, where Qt knows no such
/// encoding, or where nothing of a database is in it.
std::optional<Database> readDatabase(const QString &path, const QString &encoding, QString &error);
