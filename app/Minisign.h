#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

// Signatures in the format of minisign: Ed25519 over a file (the legacy "Ed") or over its BLAKE2b-512 ("ED"), and a
// second one over the first and a comment. The arithmetic is libsodium's.

struct MinisignKey
{
    QByteArray id;    ///< 8 bytes, by which a signature names it
    QByteArray point; ///< 32 bytes
};

/// The public key in the second line of its file. Nothing unless it is one.
std::optional<MinisignKey> minisignKey(const QByteArray &line);

struct MinisignSignature
{
    bool isPrehashed = true;
    QByteArray keyId;            ///< 8 bytes
    QByteArray signature;        ///< of the file, 64 bytes
    QByteArray comment;          ///< the trusted one; not before isCommentSigned() has said so
    QByteArray commentSignature; ///< 64 bytes
};

/// minisign writes comments of 8 KiB at most.
constexpr int LargestMinisignFile = 16 * 1024; ///< bytes

/// The content of a signature file: four lines that end with a line feed, the last one maybe without. Nothing for
/// anything else, and for more than LargestMinisignFile bytes.
std::optional<MinisignSignature> minisignSignature(const QByteArray &file);

bool isCommentSigned(const MinisignSignature &signature, const MinisignKey &key);

/// Tells of a content that comes piece by piece whether it was signed.
class SignedContent
{
public:
    /// In bytes. A legacy signature can be checked only with all of the content in memory.
    static constexpr qint64 LargestLegacy = Q_INT64_C(64) * 1024 * 1024;

    SignedContent(MinisignKey key, MinisignSignature signature);
    ~SignedContent();
    Q_DISABLE_COPY_MOVE(SignedContent)

    void add(const QByteArray &bytes);
    /// After the last piece, once.
    bool isSigned();

private:
    struct Hash;

    const MinisignKey m_key;
    const MinisignSignature m_signature;
    std::unique_ptr<Hash> m_hash; ///< null with a legacy signature
    QByteArray m_bytes;           ///< all of them, with a legacy signature
};
