#include "state/secret_key_value_store.h"

#include <utility>

#include "common/debug_log.h"
#include "state/app_settings.h"
#include "state/secret_keeper.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString apiKey = AppSettings::apiKeyKey.toString();
/// True while the keyring may still have a key that the user has removed or replaced.
const QString keyToForget = u"app_api_key_to_forget"_s;

/// How long a changed key may be in memory only. The keyring may be asking a user who does not answer.
constexpr auto keeperPatience = std::chrono::seconds(2);

/// How long a key that was awaited may be awaited again: longer than undoing is offered.
constexpr auto regret = std::chrono::seconds(10);

}  // namespace

SecretKeyValueStore::SecretKeyValueStore(KeyValueStore& store, SecretKeeper& keeper, Clock& clock)
    : m_store(store),
      m_keeper(keeper),
      m_clock(clock),
      m_key(store.text(apiKey)),
      m_isAwaited(holdsMarker()) {
    m_keeper.onChange = [this] { askKeeper(); };
    askKeeper();
}

SecretKeyValueStore::~SecretKeyValueStore() {
    m_keeper.onChange = nullptr;
    // Nobody will learn whether a key that is on its way to the keyring arrives, so assume the safe case.
    if (!m_handedOver)
        return;
    setToForget(true);
    if (isSecret())
        m_store.setValue(apiKey, *m_key);
}

std::optional<StoredValue> SecretKeyValueStore::value(const QString& key) const {
    if (key != apiKey)
        return m_store.value(key);
    if (m_isAwaited)
        return QString();
    return m_key ? std::optional<StoredValue>(*m_key) : std::nullopt;
}

Reading SecretKeyValueStore::read(const QString& key) {
    return key == apiKey ? KeyValueStore::read(key) : m_store.read(key);
}

void SecretKeyValueStore::setValue(const QString& key, StoredValue value) {
    const QString* text = key == apiKey ? std::get_if<QString>(&value) : nullptr;
    if (!text) {
        m_store.setValue(key, std::move(value));
        return;
    }
    m_key = *text;
    // Only the keyring has a key that is still awaited: deleted or replaced there, it could not be brought
    // back.
    if (m_isAwaited && !isSecret())
        m_regret = m_clock.after(regret, [this] { endRegret(); });
    setAwaited(false);
    const bool wasKept = holdsMarker();
    // A key that is typed letter by letter is not written to the disk each time once the keyring has proved
    // to work.
    if (!wasKept || !isSecret())
        m_store.setValue(apiKey, *m_key);
    if (isSecret()) {
        handOver(Prompting::may);
        return;
    }
    m_store.forgetOverwritten();
    if (wasKept || m_store.boolean(keyToForget).value_or(false))
        forget(Prompting::may);
}

bool SecretKeyValueStore::isAwaited(const QString& key) const {
    return key == apiKey && m_isAwaited;
}

void SecretKeyValueStore::awaitAgain(const QString& key) {
    if (key != apiKey)
        return;
    m_regret.takeBack();
    m_key.reset();
    m_store.setValue(apiKey, true);
    setToForget(false);
    setAwaited(true);
    find();
}

bool SecretKeyValueStore::isSecret() const {
    return m_key && !m_key->isEmpty() && *m_key != AppSettings::defaultApiKey;
}

bool SecretKeyValueStore::holdsMarker() const {
    const auto stored = m_store.value(apiKey);
    return stored && std::holds_alternative<bool>(*stored);
}

void SecretKeyValueStore::setAwaited(bool awaited) {
    if (std::exchange(m_isAwaited, awaited) != awaited && onKeyAwaited)
        onKeyAwaited(awaited);
}

void SecretKeyValueStore::askKeeper() {
    if (m_isAwaited)
        find();
    else if (!isSecret() && m_store.boolean(keyToForget).value_or(false))
        forget(Prompting::mustNot);
    else if (!holdsMarker())
        handOver(Prompting::mustNot);
}

void SecretKeyValueStore::setToForget(bool toForget) {
    if (m_store.boolean(keyToForget).value_or(false) != toForget)
        m_store.setValue(keyToForget, toForget);
}

void SecretKeyValueStore::endRegret() {
    m_regret.takeBack();
    if (isSecret())
        handOver(Prompting::may);
    else if (m_store.boolean(keyToForget).value_or(false))
        forget(Prompting::may);
}

void SecretKeyValueStore::forget(Prompting prompting) {
    setToForget(true);
    if (m_regret)
        return;
    m_keeper.forget(prompting, [this](SecretKeeper::Answer answer) {
        if (answer != SecretKeeper::Answer::done)
            return;
        setToForget(false);
        // The user may have agreed to the deletion only after entering a new key, which went along with it.
        if (isSecret() && holdsMarker()) {
            m_store.setValue(apiKey, *m_key);
            handOver(Prompting::may);
        }
    });
}

void SecretKeyValueStore::find() {
    m_keeper.find([this](SecretKeeper::Answer answer, const QString& secret) {
        using enum SecretKeeper::Answer;
        if (!m_isAwaited || answer == locked || answer == unavailable)
            return;
        // KWallet writes attributes at once, and secrets later: killed between the two, it has an empty one.
        if (secret.isEmpty())
            debugLog(u"SecretKeyValueStore: the keeper of secrets has lost the key"_s);
        m_key = secret;
        setAwaited(false);
    });
}

void SecretKeyValueStore::handOver(Prompting prompting) {
    if (m_handedOver || m_regret || !isSecret())
        return;
    m_handedOver = m_key;
    m_patience = m_clock.after(
        keeperPatience, [this] { writeInsteadOfMarker(); });
    m_keeper.keep(*m_key, prompting, [this, prompting](SecretKeeper::Answer answer) {
        m_patience.takeBack();
        const QString sent = *std::exchange(m_handedOver, std::nullopt);
        if (answer != SecretKeeper::Answer::done) {
            if (!isSecret())
                forget(Prompting::may);  // the keyring may have stored the key without confirming it
            else if (m_key != sent && prompting == Prompting::mustNot)
                handOver(Prompting::may);
            else
                writeInsteadOfMarker();
        } else if (m_key == sent) {
            m_store.setValue(apiKey, true);
            setToForget(false);
            m_store.forgetOverwritten();
        } else if (isSecret()) {
            handOver(Prompting::may);  // the user has changed it meanwhile
        } else {
            forget(Prompting::may);
        }
    });
}

void SecretKeyValueStore::writeInsteadOfMarker() {
    if (!isSecret() || !holdsMarker())
        return;
    setToForget(true);  // the keyring still has an earlier one
    m_store.setValue(apiKey, *m_key);
}

}  // namespace tralio
