#pragma once

#include <QByteArray>

/// Signs as minisign does, with a key that nothing but tests may trust.
class TestSigner
{
public:
    enum class Format { Prehashed, Legacy };

    /// Another seed: another key. Signers with different numbers and the same seed have one key under several names.
    explicit TestSigner(char seed = 1, char number = 1);

    /// As minisignKey() takes it.
    QByteArray publicKey() const;
    /// The signature file of a content.
    QByteArray sign(const QByteArray &content, const QByteArray &comment, Format format = Format::Prehashed) const;

private:
    QByteArray signature(const QByteArray &message) const;

    const QByteArray m_id;
    QByteArray m_public;
    QByteArray m_secret;
};
