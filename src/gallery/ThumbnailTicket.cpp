#include "ThumbnailTicket.h"

#include "ThumbnailLoader.h"

ThumbnailTicket::ThumbnailTicket(ThumbnailLoader &loader, quint64 number)
    : m_loader(&loader),
      m_number(number)
{
}

ThumbnailTicket::~ThumbnailTicket()
{
    if (m_loader) {
        m_loader->takeBack(m_number);
    }
}

void ThumbnailTicket::setPriority(ThumbnailPriority priority)
{
    if (m_loader) {
        m_loader->setPriority(m_number, priority);
    }
}
