"""The records of the library's interface, as vialto/vialto.h has them."""

from __future__ import annotations

from ctypes import Structure, c_char, c_float, c_int32
from numbers import Integral
from typing import Any

MOST_PASSES = 10  # of one spot to grind


def int32(value: Any) -> int:
    """The whole number, if int32 holds it; ctypes would cut its upper bits off."""
    number = int(value)
    if not -(2**31) <= number < 2**31:
        raise OverflowError(f"{number} is no 32-bit integer")
    return number


class Record(Structure):
    """A record of the library, whose whole numbers fit into its fields."""

    def __setattr__(self, name: str, value: Any) -> None:
        super().__setattr__(name, int32(value) if isinstance(value, Integral) else value)


class Event(Record):
    _fields_ = [
        ("description", c_char * 256),
        ("routine", c_char * 256),
        ("error_code", c_int32),
        ("error_type", c_int32),
    ]


class FiltCon(Record):
    _fields_ = [
        ("iMainFilterType", c_int32),
        ("iSubFilterType", c_int32),
        ("iOutType", c_int32),
        ("if250mmFilter", c_int32),
        ("xBW4IniBaseLength", c_float),
        ("xLongWavelength", c_float),
        ("xShortWavelength", c_float),
        ("xSimuVelocity", c_float),
        ("xPowerWeighting", c_float),
        ("iBeginElemIdx", c_int32),
        ("iEndElemIdx", c_int32),
    ]


class PGLot(Record):
    _fields_ = [
        ("iStart", c_int32),
        ("iEnd", c_int32),
        ("xBBUpperStart", c_float),
        ("xBBUpperEnd", c_float),
        ("xBBLowerStart", c_float),
        ("xBBLowerEnd", c_float),
        ("RawPI", c_float),
        ("RndPI", c_float),
    ]


class PGDefect(Record):
    _fields_ = [
        ("iStart", c_int32),
        ("iEnd", c_int32),
        ("BeginX", c_float),
        ("BeginY", c_float),
        ("EndX", c_float),
        ("EndY", c_float),
        ("MxHts", c_float),
        ("Type", c_int32),
    ]


class GrinderSetup(Record):
    _fields_ = [
        ("WheelBase", c_float),
        ("HeadPosition", c_float),
        ("TandemSpread", c_float),
        ("ShortWavelength", c_float),
        ("MaxGrindingDepth_mm", c_float),
    ]


class GrindSpotRecord(Record):
    _fields_ = [
        ("iNumPasses", c_int32),
        ("iDirection", c_int32 * MOST_PASSES),
        ("xDepth_mm", c_float * MOST_PASSES),
        ("iStart", c_int32),
        ("iEnd", c_int32),
    ]


class MustGrindCfg(Record):
    _fields_ = [
        ("iRideIndexType", c_int32),
        ("if250mmFilter", c_int32),
        ("xRideThreshold", c_float),
        ("xSlideBaseLength", c_float),
        ("ib_grindopt", c_int32 * 3),
        ("x_grinddepth_min", c_float),
        ("x_grindlength_min", c_float),
        ("x_grindgap_min", c_float),
    ]


class ProfAnalysis(Record):
    _fields_ = [
        ("if_outputfilt", c_int32),
        ("if_padding", c_int32),
        ("if_upsampling", c_int32),
        ("iIndexMaxCorr", c_int32),
        ("x_normsampleinterval", c_float),
        ("x_offset_max", c_float),
        ("x_opt_finalcc", c_float),
        ("x_opt_shapefactor", c_float),
        ("x_opt_roughcc", c_float),
        ("x_opt_offset", c_float),
        ("x_ref_iri", c_float),
        ("x_test_iri", c_float),
        ("x_iri_diff", c_float),
    ]


class Profinfo(Record):
    _fields_ = [
        ("i_raw_leadin", c_int32),
        ("i_raw_leadout", c_int32),
        ("i_filt_leadin", c_int32),
        ("i_filt_leadout", c_int32),
        ("x_sampleinterval", c_float),
        ("tFilter", FiltCon),
    ]


class JointIDCfg(Record):
    _fields_ = [
        ("i_jntid_method", c_int32),
        ("if_skewed", c_int32),
        ("xDomJointSpacing", c_float),
    ]
