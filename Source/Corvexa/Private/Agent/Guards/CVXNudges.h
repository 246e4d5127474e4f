#pragma once

struct FCVXGuardContext;

/** Short reminders that come at one known moment of a turn. */
namespace CVXNudges
{
/** After an answer of text alone. */
void AskForToolCall(FCVXGuardContext& Context);
/** After an answer that the output limit cut. */
void WarnOfTruncation(FCVXGuardContext& Context);
/** While C++ was written and not compiled; once for each user message. */
void RemindToCompileCpp(FCVXGuardContext& Context);
/** When three quarters of the turns are used; once for each user message. */
void WarnOfTurnBudget(FCVXGuardContext& Context);
} // namespace CVXNudges
