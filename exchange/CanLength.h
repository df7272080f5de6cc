#pragma once

/// ISO 11898-1: the data length code of a CAN FD frame, 0 to 15, that holds length bytes, 0 to 64; of more steps than
/// one the smallest.
int canLengthCode(int length);
/// The bytes that a data length code, 0 to 15, stands for in a CAN FD frame. Any other: 0.
int canLengthOfCode(int code);
