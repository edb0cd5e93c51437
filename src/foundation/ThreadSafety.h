#pragma once

// What a lock guards, so that the compiler checks it: clang refuses an access without the lock
// (-Wthread-safety). Other compilers see nothing of this.

#ifdef __clang__
#define TALLYMOOR_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define TALLYMOOR_THREAD_ATTRIBUTE(x)
#endif

/// A class that is a lock.
#define CAPABILITY(name) TALLYMOOR_THREAD_ATTRIBUTE(capability(name))
/// A class that holds a lock for a scope.
#define SCOPED_CAPABILITY TALLYMOOR_THREAD_ATTRIBUTE(scoped_lockable)
/// A member that is read and changed only under the lock.
#define GUARDED_BY(lock) TALLYMOOR_THREAD_ATTRIBUTE(guarded_by(lock))
/// An operation whose caller holds the lock.
#define REQUIRES(lock) TALLYMOOR_THREAD_ATTRIBUTE(requires_capability(lock))
/// An operation that takes the lock, or the object itself when no lock is named.
#define ACQUIRE(...) TALLYMOOR_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
/// An operation that releases it.
#define RELEASE(...) TALLYMOOR_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
/// The inside of a lock, which the check can't follow.
#define NO_THREAD_SAFETY_ANALYSIS TALLYMOOR_THREAD_ATTRIBUTE(no_thread_safety_analysis)
