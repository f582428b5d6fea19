#include "ThumbnailUse.h"

#include "ThumbnailLoader.h"

ThumbnailUse::ThumbnailUse(ThumbnailLoader &loader) : m_loader(&loader)
{
    m_loader->beginUse();
}

ThumbnailUse::~ThumbnailUse()
{
    if (m_loader) {
        m_loader->endUse();
    }
}
