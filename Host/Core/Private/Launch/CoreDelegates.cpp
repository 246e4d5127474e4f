#include "Misc/CoreDelegates.h"

FSimpleMulticastDelegate FCoreDelegates::OnPreExit;
