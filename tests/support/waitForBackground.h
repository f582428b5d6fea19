#pragma once

#include "runInBackground.h"

#include <QThreadPool>

/// Until nothing runs in the background any more, so that what a test has begun doesn't print into the next
/// one's output, or read its files while they are made. What comes back to the main thread still waits there.
inline void waitForBackground()
{
    for (const BackgroundQueue queue :
         {BackgroundQueue::Default, BackgroundQueue::UserInitiated, BackgroundQueue::Scan,
          BackgroundQueue::Listing, BackgroundQueue::Thumbnails}) {
        background::pool(queue).waitForDone();
    }
}
