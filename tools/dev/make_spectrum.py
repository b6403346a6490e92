#!/usr/bin/env python3
"""Writes the example spectrum file. The same file every time.

    tools/dev/make_spectrum.py > examples/spectrum.n42

Two detectors, sodium iodide and lanthanum bromide, see the natural background for an hour and then
a source of caesium-137 and cobalt-60 for fifteen minutes. A line becomes a peak of the detector's
resolution, the Compton continuum below its edge and a bump of backscatter; the background adds the
lines of the natural chains on a falling continuum. Counts are Poisson distributed.
"""
import math
import random
import sys

CHANNELS = 1024
FULL_SCALE = 3000.0
BACKGROUND = [(74.8, 1.2), (92.8, .5), (238.6, 1.5), (295.2, .6), (338.3, .4), (351.9, 1.1),
              (511.0, .5), (583.2, .9), (609.3, 1.3), (727.3, .2), (768.4, .15), (911.2, .7),
              (969.0, .45), (1120.3, .4), (1238.1, .15), (1377.7, .12), (1460.8, 3.4),
              (1764.5, .5), (2204.1, .14), (2614.5, 1.0)]
SOURCE = [(32.1, 30.0), (661.7, 260.0), (1173.2, 105.0), (1332.5, 100.0)]


class Detector:
    def __init__(self, name, kind, resolution, efficiency, offset, curvature):
        self.name, self.kind = name, kind
        self.resolution, self.efficiency = resolution, efficiency  # resolution at 662 keV
        gain = (FULL_SCALE - offset - curvature * CHANNELS ** 2) / CHANNELS
        self.coefficients = (offset, gain, curvature)

    def energy(self, channel):
        a, b, c = self.coefficients
        return a + b * channel + c * channel * channel

    def shape(self, lines, continuum):
        """Expected counts per second in each channel."""
        rates = []
        for channel in range(1, CHANNELS + 1):
            energy = self.energy(channel)
            width = self.energy(channel + .5) - self.energy(channel - .5)
            rate = continuum * (math.exp(-energy / 160) + .1 * math.exp(-energy / 800)) / 160
            rate += sum(self.line(energy, *line) for line in lines)
            threshold = 1 / (1 + math.exp(-(energy - 28) / 4))
            rates.append(max(rate, 0) * width * threshold * self.efficiency)
        return rates

    def line(self, energy, position, strength):
        sigma = self.resolution * 661.7 * math.sqrt(position / 661.7) / 2.355
        share = 1 / (1 + (position / 450) ** 1.25)  # of the counts in the peak
        edge = position / (1 + 511 / (2 * position))
        peak = share * math.exp(-.5 * ((energy - position) / sigma) ** 2) / sigma / 2.507
        level = (1 - share) / edge * (.8 + .6 * (energy / edge) ** 2)
        compton = level / (1 + math.exp(min((energy - edge) / (1.3 * sigma), 50)))
        scattered = position - edge
        bump = .035 * (1 - share) * math.exp(-.5 * ((energy - scattered) / (2.2 * sigma)) ** 2)
        return strength * (peak + compton + bump / sigma)


def poisson(random_numbers, mean):
    if mean > 60:
        return max(0, round(random_numbers.gauss(mean, math.sqrt(mean))))
    limit, count, product = math.exp(-mean), 0, random_numbers.random()
    while product > limit:
        count += 1
        product *= random_numbers.random()
    return count


def counted_zeroes(counts):
    words, zeros = [], 0
    for count in counts + [None]:
        if count == 0:
            zeros += 1
            continue
        if zeros:
            words += ["0", str(zeros)]
        zeros = 0
        if count is not None:
            words.append(str(count))
    return words


def lines_of(words, width=24):
    return "\n".join(" ".join(words[i:i + width]) for i in range(0, len(words), width))


def measurement(number, code, start, seconds, detectors, rates, neutrons, numbers):
    print(f'  <RadMeasurement id="Measurement{number}">\n'
          f"    <MeasurementClassCode>{code}</MeasurementClassCode>\n"
          f"    <StartDateTime>{start}</StartDateTime>\n"
          f"    <RealTimeDuration>PT{seconds}S</RealTimeDuration>")
    for detector in detectors:
        rate = rates(detector)
        live = seconds * (1 - 4e-6 * sum(rate))
        counts = [poisson(numbers, live * r) for r in rate]
        print(f'    <Spectrum id="Spectrum{number}-{detector.name}" '
              f'radDetectorInformationReference="{detector.name}" '
              f'energyCalibrationReference="Energy-{detector.name}">\n'
              f"      <LiveTimeDuration>PT{live:.2f}S</LiveTimeDuration>\n"
              f'      <ChannelData compressionCode="CountedZeroes">\n'
              f"{lines_of(counted_zeroes(counts))}\n      </ChannelData>\n    </Spectrum>")
    print(f'    <GrossCounts id="Neutrons{number}" radDetectorInformationReference="He3">\n'
          f"      <LiveTimeDuration>PT{seconds}S</LiveTimeDuration>\n"
          f"      <CountData>{poisson(numbers, neutrons * seconds)}</CountData>\n"
          "    </GrossCounts>\n  </RadMeasurement>")


def main():
    numbers = random.Random(20260102)
    detectors = [Detector("NaI", "NaI", .070, 1.0, -4.0, 6e-6),
                 Detector("LaBr3", "LaBr3", .028, .42, 1.5, -2e-6)]
    print('<?xml version="1.0" encoding="UTF-8"?>\n'
          '<RadInstrumentData xmlns="http://physics.nist.gov/N42/2011/N42">\n'
          "  <RadInstrumentDataCreatorName>make_spectrum.py</RadInstrumentDataCreatorName>\n"
          '  <RadInstrumentInformation id="Instrument">\n'
          "    <RadInstrumentManufacturerName>uxtree_Utils</RadInstrumentManufacturerName>\n"
          "    <RadInstrumentModelName>Simulated pair</RadInstrumentModelName>\n"
          "    <RadInstrumentClassCode>Spectroscopic Personal Radiation Detector"
          "</RadInstrumentClassCode>\n  </RadInstrumentInformation>")
    for name, category, kind in [(d.name, "Gamma", d.kind) for d in detectors] + \
            [("He3", "Neutron", "He3")]:
        print(f'  <RadDetectorInformation id="{name}">\n'
              f"    <RadDetectorCategoryCode>{category}</RadDetectorCategoryCode>\n"
              f"    <RadDetectorKindCode>{kind}</RadDetectorKindCode>\n"
              "  </RadDetectorInformation>")
    for detector in detectors:
        words = " ".join(f"{c:.10g}" for c in detector.coefficients)
        print(f'  <EnergyCalibration id="Energy-{detector.name}">\n'
              f"    <CoefficientValues>{words}</CoefficientValues>\n  </EnergyCalibration>")
    measurement(1, "Background", "2026-01-02T09:00:00Z", 3600, detectors,
                lambda d: d.shape(BACKGROUND, 110), .02, numbers)
    measurement(2, "Foreground", "2026-01-02T10:05:00Z", 900, detectors,
                lambda d: d.shape(BACKGROUND + SOURCE, 150), .02, numbers)
    print("</RadInstrumentData>")


if __name__ == "__main__":
    sys.exit(main())
