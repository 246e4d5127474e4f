#pragma once

class UCVXSettings;

/** The one-time steps that bring stored settings up to date. */
namespace CVXSettingsMigrations
{
/**
 * Runs the steps above the settings' version, lowest first. Each raises the version to its own number and saves, so
 * that a start that is cut short goes on behind the last finished step. Game thread.
 */
void Run(UCVXSettings& Settings);
} // namespace CVXSettingsMigrations
