#pragma once

/** A rotation by three angles in degrees. */
struct FRotator
{
	/** Up and down. */
	double Pitch = 0;
	/** Around the up axis. */
	double Yaw = 0;
	/** Around the forward axis. */
	double Roll = 0;

	FRotator() = default;
	FRotator(double InPitch, double InYaw, double InRoll)
		: Pitch(InPitch)
		, Yaw(InYaw)
		, Roll(InRoll)
	{
	}
	friend bool operator==(const FRotator&, const FRotator&) = default;

	static const FRotator ZeroRotator;
};

inline const FRotator FRotator::ZeroRotator(0, 0, 0);
