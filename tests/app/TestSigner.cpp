#include "tests/app/TestSigner.h"

#include <sodium.h>

namespace {
unsigned char *data(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

const unsigned char *data(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}
} // namespace

TestSigner::TestSigner(char seed, char number)
    : m_id(8, number)
    , m_public(crypto_sign_PUBLICKEYBYTES, '\0')
    , m_secret(crypto_sign_SECRETKEYBYTES, '\0')
{
    const QByteArray seeds(crypto_sign_SEEDBYTES, seed);
    if (sodium_init() < 0 || crypto_sign_seed_keypair(data(m_public), data(m_secret), data(seeds)) != 0) {
        qFatal("libsodium makes no keys");
    }
}

QByteArray TestSigner::publicKey() const
{
    return ("Ed" + m_id + m_public).toBase64();
}

QByteArray TestSigner::signature(const QByteArray &message) const
{
    QByteArray bytes(crypto_sign_BYTES, '\0');
    crypto_sign_detached(data(bytes), nullptr, data(message), std::size_t(message.size()), data(m_secret));
    return bytes;
}

QByteArray TestSigner::sign(const QByteArray &content, const QByteArray &comment, Format format) const
{
    QByteArray message = content;
    if (format == Format::Prehashed) {
        message = QByteArray(crypto_generichash_BYTES_MAX, '\0');
        crypto_generichash(data(message), std::size_t(message.size()), data(content), std::size_t(content.size()),
                           nullptr, 0);
    }
    const QByteArray ofContent = signature(message);
    const QByteArray first = (format == Format::Prehashed ? "ED" : "Ed") + m_id + ofContent;
    return "untrusted comment: of a test\n" + first.toBase64() + "\ntrusted comment: " + comment + '\n' +
           signature(ofContent + comment).toBase64() + '\n';
}
