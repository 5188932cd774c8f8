#include "Services/Account/Keychain.h"

#include <QPromise>
#include <QStringDecoder>

#include <memory>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

/// A promise that is kept in any case: with none, if it goes before an answer has come.
class Answer
{
public:
    Answer() { m_promise.start(); }
    ~Answer()
    {
        if (!m_given)
            give(std::nullopt);
    }
    Q_DISABLE_COPY_MOVE(Answer)

    [[nodiscard]] Keychain::Reading future() const { return m_promise.future(); }
    void give(const std::optional<QString> &text)
    {
        m_given = true;
        m_promise.addResult(text);
        m_promise.finish();
    }

private:
    QPromise<std::optional<QString>> m_promise;
    bool m_given = false;
};

SecureItem itemOf(const QString &key)
{
    return {u"ir.navorin.NavorinRadio"_s, key};
}

std::optional<QString> decoded(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

std::optional<QString> textOf(SecureItems &items, const SecureItem &item)
{
    auto copy = items.copyMatching(item);
    if (copy.status != SecureItemStatus::Success)
        return std::nullopt;
    auto text = decoded(copy.data);
    wipe(copy.data);
    return text;
}

void write(SecureItems &items, const SecureItem &item, const QByteArray &bytes)
{
    if (items.exists(item) == SecureItemStatus::Success)
        items.update(item, bytes);
    else
        items.add(item, bytes);
}

std::shared_ptr<const QByteArray> wipedInTheEnd(QByteArray bytes)
{
    return {new QByteArray(std::move(bytes)), [](QByteArray *kept) {
                wipe(*kept);
                delete kept;
            }};
}

} // namespace

Keychain::Keychain(SecureItemStore &store)
    : m_store(store)
{
}

SharedInstance<Keychain> &Keychain::instance()
{
    static SharedInstance<Keychain> instance;
    return instance;
}

std::optional<QString> Keychain::get(const QString &key)
{
    auto &keychain = instance().get();
    const auto reading = keychain.takeReading(key);
    if (!reading.isFinished())
        keychain.m_store.settle();
    return reading.isFinished() ? reading.result() : std::nullopt;
}

void Keychain::set(const std::optional<QString> &value, const QString &key)
{
    auto &keychain = instance().get();
    keychain.m_warm.remove(key);
    if (!value || value->isEmpty()) {
        keychain.m_store.post([item = itemOf(key)](SecureItems &items) { items.remove(item); });
        return;
    }
    keychain.m_store.post([item = itemOf(key), bytes = wipedInTheEnd(value->toUtf8())](SecureItems &items) {
        write(items, item, *bytes);
    });
}

Keychain::Reading Keychain::getSoon(const QString &key)
{
    return instance().get().takeReading(key);
}

void Keychain::warmUp(const QString &key)
{
    auto &keychain = instance().get();
    if (!keychain.m_warm.contains(key))
        keychain.m_warm.insert(key, keychain.startReading(key));
}

Keychain::Reading Keychain::startReading(const QString &key) const
{
    const auto answer = std::make_shared<Answer>();
    auto reading = answer->future();
    m_store.post([item = itemOf(key), answer](SecureItems &items) { answer->give(textOf(items, item)); });
    return reading;
}

Keychain::Reading Keychain::takeReading(const QString &key)
{
    return m_warm.contains(key) ? m_warm.take(key) : startReading(key);
}

} // namespace navorin
