// SPDX-License-Identifier: MIT
#include "link/PendingRequest.h"

namespace ROUTERLINK {

PendingRequest::PendingRequest(unsigned int messageID, QObject* parent)
    : QObject(parent), m_messageID(messageID)
{}

PendingRequest::~PendingRequest() = default;

} // namespace ROUTERLINK
