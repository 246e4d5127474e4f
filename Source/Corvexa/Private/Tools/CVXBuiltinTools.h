#pragma once

/** Registers the tools that come with the plug-in, in the order in which models see them. Game thread. */
void RegisterBuiltinTools();
