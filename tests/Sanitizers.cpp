// What the sanitizers must know, compiled in, so that the programs also run by themselves and while the build
// asks them for their tests.

#ifdef __has_feature // clang, which builds the fuzz targets
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__ 1
#endif
#endif

#ifdef __SANITIZE_ADDRESS__

// The tests of the command line look at what it prints.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    // The offscreen platform plug-in keeps its screen, and fontconfig its caches, until the process ends. A
    // fault that passes through Qt's delivery of an event leaves the guard of the receiver behind.
    return "leak:QScreen\nleak:libqoffscreen.so\nleak:handleScreenAdded\nleak:libfontconfig\n"
           "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n";
}

#endif

// Qt is not built with the sanitizer, so its locks cannot be seen. Each hand-over is told object by object,
// so that nothing else gains an order that it does not have: an event from its posting to its delivery, a
// call that is queued for an object to the next one that the object receives, a thread from the end of its
// run() to whoever waits for it or deletes it, a mutex from one owner to the next. The functions below stand
// before those of Qt in the symbol search and pass every call on.
#ifdef __SANITIZE_THREAD__

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QMutex>
#include <QObject>
#include <QThread>
#include <dlfcn.h>
#include <memory>
#include <sanitizer/tsan_interface.h>

#define POST_EVENT "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi"
#define INVOKE_METHOD                                                                                        \
    "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv"
#define THREAD_START "_ZN7QThread5startENS_8PriorityE"
#define THREAD_WAIT "_ZN7QThread4waitE14QDeadlineTimer"
#define MUTEX_LOCK "_ZN6QMutex4lockEv"
#define MUTEX_UNLOCK "_ZN6QMutex6unlockEv"
#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED void PostEvent(QObject* receiver, QEvent* event, int priority) __asm__(POST_EVENT);
EXPORTED bool InvokeMethod(QObject* receiver, void* slot, Qt::ConnectionType type,
                           void* result) __asm__(INVOKE_METHOD);
EXPORTED void StartThread(QThread* thread, QThread::Priority priority) __asm__(THREAD_START);
EXPORTED bool WaitThread(QThread* thread, QDeadlineTimer deadline) __asm__(THREAD_WAIT);
EXPORTED void LockMutex(QMutex* mutex) __asm__(MUTEX_LOCK);
EXPORTED void UnlockMutex(QMutex* mutex) __asm__(MUTEX_UNLOCK);

EXPORTED const char* __tsan_default_suppressions()
{
    // Memory that these take and give back among themselves, under locks that are not seen. Accesses that our
    // own code makes are reported all the same, also when it is called by them: there is a test of that.
    return "called_from_lib:libQt5Core.so.5\ncalled_from_lib:libQt5Gui.so.5\n"
           "called_from_lib:libQt5Widgets.so.5\ncalled_from_lib:libQt5XmlPatterns.so.5\n"
           "called_from_lib:libQt5Network.so.5\ncalled_from_lib:libQt5DBus.so.5\n"
           "called_from_lib:libQt5XcbQpa.so.5\ncalled_from_lib:libxcb.so.1\nmutex:libX11.so.6\n"
           "called_from_lib:libglib-2.0.so.0\n";
}

namespace {

template <class TFunction> TFunction* OfQt(TFunction*, const char* name)
{
    return reinterpret_cast<TFunction*>(::dlsym(RTLD_NEXT, name));
}

// Called before each delivery; the answer says that it is not done here.
bool OnDelivery(void** data)
{
    auto* receiver = static_cast<QObject*>(data[0]);
    auto* event = static_cast<QEvent*>(data[1]);
    __tsan_acquire(event);
    if (event->type() == QEvent::DeferredDelete || event->type() == QEvent::MetaCall)
        __tsan_acquire(receiver);
    return false;
}

/// Gives a queued call's function back in the thread that called it, to which the events of a queue belong.
/// Left to Qt, whoever is last ends it, and who that is cannot be seen.
class CFunctionEnd final : public QEvent
{
public:
    explicit CFunctionEnd(QtPrivate::QSlotObjectBase* function) : QEvent(QEvent::None), m_function(function)
    {
        m_function->ref();
    }
    ~CFunctionEnd() override { m_function->destroyIfLastRef(); }

private:
    QtPrivate::QSlotObjectBase* m_function;
};

const bool watchesDelivery = QInternal::registerCallback(QInternal::EventNotifyCallback, &OnDelivery);

} // namespace

void PostEvent(QObject* receiver, QEvent* event, int priority)
{
    __tsan_release(event);
    static const auto real = OfQt(&PostEvent, POST_EVENT);
    real(receiver, event, priority);
}

bool InvokeMethod(QObject* receiver, void* slot, Qt::ConnectionType type, void* result)
{
    __tsan_release(receiver);
    std::unique_ptr<QEvent> end;
    QCoreApplication* application = QCoreApplication::instance(); // which outlives any receiver
    if (receiver && type == Qt::QueuedConnection && application &&
        receiver->thread() == application->thread())
        end = std::make_unique<CFunctionEnd>(static_cast<QtPrivate::QSlotObjectBase*>(slot));
    static const auto real = OfQt(&InvokeMethod, INVOKE_METHOD);
    const bool invoked = real(receiver, slot, type, result);
    if (end)
        QCoreApplication::postEvent(application, end.release());
    return invoked;
}

void StartThread(QThread* thread, QThread::Priority priority)
{
    // Called on the thread itself, as the last thing that it does, but before it may ask for its own end.
    const bool deletesItself = QObject::disconnect(thread, &QThread::finished, thread, &QObject::deleteLater);
    QObject::connect(thread, &QThread::finished, [thread] { __tsan_release(thread); });
    if (deletesItself)
        QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    static const auto real = OfQt(&StartThread, THREAD_START);
    real(thread, priority);
}

bool WaitThread(QThread* thread, QDeadlineTimer deadline)
{
    static const auto real = OfQt(&WaitThread, THREAD_WAIT);
    const bool ended = real(thread, deadline);
    if (ended)
        __tsan_acquire(thread);
    return ended;
}

void LockMutex(QMutex* mutex)
{
    static const auto real = OfQt(&LockMutex, MUTEX_LOCK);
    real(mutex);
    __tsan_acquire(mutex);
}

void UnlockMutex(QMutex* mutex)
{
    __tsan_release(mutex);
    static const auto real = OfQt(&UnlockMutex, MUTEX_UNLOCK);
    real(mutex);
}

#endif
