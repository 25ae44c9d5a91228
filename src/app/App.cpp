#include "app/App.h"

#include "app/BackgroundLicence.h"
#include "app/MainWindow.h"
#include "app/QtTexts.h"
#include "crash/CrashEvent.h"
#include "crash/CrashReporter.h"
#include "info/InfoDictionary.h"
#include "persistence/InstanceChannel.h"
#include "persistence/Persistence.h"
#include "persistence/SessionLock.h"
#include "ui/common/Preferences.h"
#include "ui/export/ExportRunner.h"
#include "ui/style/Controls.h"
#include "ui/style/Motion.h"
#include "ui/style/Theme.h"

#include <QApplication>
#include <QLocale>
#include <QStandardPaths>

namespace pointloom::App {

namespace {

QString dataFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Pointloom");
}

// Consent is asked for on the reporter's thread, through settings of its own.
class CrashReports {
public:
    explicit CrashReports(const InfoDictionary& info) {
        CrashReporter& reporter = CrashReporter::shared();
        reporter.setConsentQuery([] { return UserDefaults().boolean(Preferences::crashReportsKey); });
        reporter.setup(info);
    }
    ~CrashReports() { CrashReporter::shared().stop(); }
    CrashReports(const CrashReports&) = delete;
    CrashReports& operator=(const CrashReports&) = delete;
};

bool hasAddressForReports(const InfoDictionary& info) {
    const auto dsn = info.text("SentryDSN");
    return dsn && SentryDSN::parse(*dsn);
}

// A problem of the start, shown once the window is open.
struct Trouble {
    L10nKey title;
    QString message;
};

Language languageAtStart(const UserDefaults& defaults) {
    return Preferences::firstLanguage(defaults, QLocale::system().uiLanguages());
}

void loadSession(Persistence* persistence, const UserDefaults& defaults, AppState& state) {
    state.language = languageAtStart(defaults);
    if (persistence)
        persistence->load(state);
}

Trouble troubleOf(const ExportQueue::Damage& damage, const AppState& state) {
    const QString place = damage.setAside.isEmpty()
                              ? QString()
                              : u'\n' + format(state.t(L10nKey::queueSetAside), damage.setAside);
    return {L10nKey::queueDamagedTitle, damage.reason + place};
}

// Runs in the instance that owns the stored session, or in one that can keep none.
int runWindow(const std::optional<SessionLock>& lock, const QStringList& files,
              std::optional<Trouble> trouble) {
    const InfoDictionary info = InfoDictionary::ofApplication();
    const CrashReports crashReports(info);
    UserDefaults defaults;
    std::optional<Persistence> persistence;
    if (lock)
        persistence.emplace(defaults, *lock);
    AppState state(persistence ? &*persistence : nullptr);
    loadSession(persistence ? &*persistence : nullptr, defaults, state);
    const QtTexts qtTexts(state);
    UndoStack undo;
    DesktopDialogs dialogs(state, defaults);
    LicenceManager licence(LicenceManager::partsOfThisMachine(info));
    ExportRunner exports(state, lock ? lock->folder() + QStringLiteral("/exports.json") : QString());
    if (const auto damage = exports.queue().restore())
        trouble = troubleOf(*damage, state);
    CommandKeys keys(Preferences::keys(defaults));
    MainWindow window({state, undo, defaults, dialogs, keys}, licence, exports);

    std::optional<InstanceServer> server;
    const auto takeOver = [&window](const QStringList& handedOver) {
        window.bringToFront();
        for (const QString& file : handedOver)
            window.content().openFile(file);
    };
    try {
        if (lock)
            server.emplace(*lock, takeOver);
    } catch (const FileError& error) {
        trouble = {L10nKey::appStartsUnanswered, QString::fromUtf8(error.what())};
    }

    window.show();
    if (hasAddressForReports(info))
        window.content().askForCrashConsentOnce();
    window.content().showNewsOnce();
    const BackgroundLicence licenceFollower(licence, state, [&exports] { exports.begin(); });
    QTimer::singleShot(0, &window, [&] {
        if (trouble)
            dialogs.alert(&window, state.t(trouble->title), trouble->message);
        for (const QString& file : files)
            window.content().openFile(file);
    });
    return QApplication::exec();
}

// The lock of a killed process is released when its last thread exits; on a busy machine threads of low
// priority take seconds, and those of an export, which are many, more than ten.
constexpr std::chrono::seconds timeToEnd(30);

int explainSilence() {
    const Language language = languageAtStart(UserDefaults());
    showAlert(nullptr, t(language, L10nKey::appAlreadyRunningTitle),
              t(language, L10nKey::appAlreadyRunningMessage));
    return EXIT_FAILURE;
}

}

int run(QApplication& application, const QStringList& files) {
    Theme::shared().apply(application, Preferences::theme(UserDefaults()));
    Motion::shared().followDesktop();
    Controls::keepWheelForPages(application);
    std::optional<SessionLock> lock;
    std::optional<Trouble> trouble;
    try {
        lock = SessionLock::tryAcquire(dataFolder());
        if (!lock && handOver(dataFolder(), files))
            return EXIT_SUCCESS;
        if (!lock)
            lock = SessionLock::acquireWithin(dataFolder(), timeToEnd);
        if (!lock)
            return explainSilence();
    } catch (const FileError& error) {
        trouble = {L10nKey::appSessionNotKept, QString::fromUtf8(error.what())};
    }
    return runWindow(lock, files, trouble);
}

}
