#include "app/Minisign.h"

#include <QByteArrayList>

#include <sodium.h>

#include <utility>

namespace {
constexpr int IdSize = 8; ///< bytes
constexpr int AlgorithmSize = 2;
constexpr int PointSize = crypto_sign_PUBLICKEYBYTES;
constexpr int SignatureSize = crypto_sign_BYTES;
constexpr int HashSize = crypto_generichash_BYTES_MAX;

/// Chooses the library's code for this processor; safe on all threads, and at work at once afterwards.
bool isLibraryReady()
{
    return sodium_init() >= 0;
}

const unsigned char *data(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

/// So many bytes in base64 as it is written, nothing else; otherwise empty.
QByteArray decoded(const QByteArray &base64, int size)
{
    const QByteArray bytes = QByteArray::fromBase64(base64);
    return bytes.size() == size && bytes.toBase64() == base64 ? bytes : QByteArray();
}

bool isSignedBy(const QByteArray &signature, const QByteArray &message, const MinisignKey &key)
{
    return isLibraryReady() && crypto_sign_verify_detached(data(signature), data(message), std::size_t(message.size()),
                                                           data(key.point)) == 0;
}
} // namespace

std::optional<MinisignKey> minisignKey(const QByteArray &line)
{
    const QByteArray bytes = decoded(line, AlgorithmSize + IdSize + PointSize);
    const MinisignKey key{bytes.mid(AlgorithmSize, IdSize), bytes.mid(AlgorithmSize + IdSize)};
    const bool isKey = bytes.startsWith("Ed") && crypto_core_ed25519_is_valid_point(data(key.point)) == 1;
    return isKey ? std::make_optional(key) : std::nullopt;
}

std::optional<MinisignSignature> minisignSignature(const QByteArray &file)
{
    const QByteArray untrusted("untrusted comment: ");
    const QByteArray trusted("trusted comment: ");
    QByteArrayList lines = file.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    if (file.size() > LargestMinisignFile || lines.size() != 4 || !lines.at(0).startsWith(untrusted) ||
        !lines.at(2).startsWith(trusted)) {
        return std::nullopt;
    }
    const QByteArray bytes = decoded(lines.at(1), AlgorithmSize + IdSize + SignatureSize);
    const MinisignSignature signature{bytes.startsWith("ED"), bytes.mid(AlgorithmSize, IdSize),
                                      bytes.mid(AlgorithmSize + IdSize), lines.at(2).mid(trusted.size()),
                                      decoded(lines.at(3), SignatureSize)};
    const bool isKnown = bytes.startsWith("ED") || bytes.startsWith("Ed");
    return isKnown && !signature.commentSignature.isEmpty() ? std::make_optional(signature) : std::nullopt;
}

bool isCommentSigned(const MinisignSignature &signature, const MinisignKey &key)
{
    return isSignedBy(signature.commentSignature, signature.signature + signature.comment, key);
}

struct SignedContent::Hash
{
    crypto_generichash_state state;
};

SignedContent::SignedContent(MinisignKey key, MinisignSignature signature)
    : m_key(std::move(key))
    , m_signature(std::move(signature))
    , m_hash(m_signature.isPrehashed && isLibraryReady() ? std::make_unique<Hash>() : nullptr)
{
    if (m_hash != nullptr) {
        crypto_generichash_init(&m_hash->state, nullptr, 0, HashSize);
    }
}

SignedContent::~SignedContent() = default;

void SignedContent::add(const QByteArray &bytes)
{
    if (m_hash == nullptr) {
        m_bytes += bytes;
    } else {
        crypto_generichash_update(&m_hash->state, data(bytes), std::size_t(bytes.size()));
    }
}

bool SignedContent::isSigned()
{
    if (m_hash != nullptr) {
        m_bytes.resize(HashSize);
        crypto_generichash_final(&m_hash->state, reinterpret_cast<unsigned char *>(m_bytes.data()), HashSize);
    }
    return isSignedBy(m_signature.signature, m_bytes, m_key);
}
