#include "geometry.h"

#include "goals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <stdexcept>
#include <string>

// Distance geometry: the atoms start at random places in four dimensions, where they can pass each other, and relax to
// the distances and volumes wanted while the fourth dimension is pressed flat.

namespace residuedb {

namespace {

constexpr double volumeTolerance = 0.7;

using Point = std::array<double, 4>;
using Points = std::vector<Point>;

Point difference(Point const& a, Point const& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2], a[3] - b[3]};
}

double dot(Point const& a, Point const& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

/// In the first three dimensions.
Point cross(Point const& a, Point const& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0], 0.0};
}

class Relaxation {
public:
    Relaxation(Goals const& wanted, std::size_t numAtoms, unsigned seed)
        : goals(wanted), points(numAtoms), velocities(numAtoms), forces(numAtoms) {
        std::mt19937 random(seed);
        double const width = 3.0 + 0.1 * static_cast<double>(numAtoms);
        for (Point& p : points) {
            for (double& x : p) x = width * (static_cast<double>(random()) / 4294967296.0 - 0.5);
        }
    }

    Points const& run() {
        constexpr int numSteps = 1000;
        for (int step = 0; step < numSteps; ++step) {
            double const progress = static_cast<double>(step) / numSteps;
            for (Point& f : forces) f = {};
            for (DistanceGoal const& goal : goals.distances) pull(goal);
            for (VolumeGoal const& goal : goals.volumes) turn(goal);
            for (std::size_t i = 0; i < points.size(); ++i) move(i, 4.0 * progress * progress);
        }
        for (Point& p : points) p[3] = 0.0;
        return points;
    }

    bool isGood() const {
        return std::all_of(goals.distances.begin(), goals.distances.end(),
                           [&](DistanceGoal const& g) { return std::abs(missing(g)) <= g.tolerance; }) &&
               std::all_of(goals.volumes.begin(), goals.volumes.end(),
                           [&](VolumeGoal const& g) { return std::abs(volume(g) - g.volume) <= volumeTolerance; });
    }

private:
    Point& at(int i, Points& of) const { return of[static_cast<std::size_t>(i)]; }
    Point const& at(int i) const { return points[static_cast<std::size_t>(i)]; }

    double missing(DistanceGoal const& goal) const {
        Point const d = difference(at(goal.a), at(goal.b));
        double const change = goal.length - std::sqrt(dot(d, d));
        return goal.isLeast ? std::max(change, 0.0) : change;
    }

    void pull(DistanceGoal const& goal) {
        double const change = missing(goal);
        if (change == 0.0) return;
        Point const d = difference(at(goal.a), at(goal.b));
        double const factor = (goal.isLeast ? 0.3 : 1.0) * change / std::max(std::sqrt(dot(d, d)), 0.1);
        push(goal.a, d, factor);
        push(goal.b, d, -factor);
    }

    double volume(VolumeGoal const& goal) const {
        Point const& origin = at(goal.atoms[0]);
        return dot(difference(at(goal.atoms[1]), origin),
                   cross(difference(at(goal.atoms[2]), origin), difference(at(goal.atoms[3]), origin)));
    }

    void turn(VolumeGoal const& goal) {
        Point const& origin = at(goal.atoms[0]);
        Point const a = difference(at(goal.atoms[1]), origin);
        Point const b = difference(at(goal.atoms[2]), origin);
        Point const c = difference(at(goal.atoms[3]), origin);
        double const factor = 0.05 * std::clamp(goal.volume - volume(goal), -2.0, 2.0);
        Point const slopes[] = {cross(b, c), cross(c, a), cross(a, b)};
        for (std::size_t i = 0; i < 3; ++i) {
            push(goal.atoms[i + 1], slopes[i], factor);
            push(goal.atoms[0], slopes[i], -factor);
        }
    }

    void push(int i, Point const& direction, double factor) {
        Point& force = at(i, forces);
        for (std::size_t k = 0; k < force.size(); ++k) force[k] += factor * direction[k];
    }

    void move(std::size_t i, double flattening) {
        forces[i][3] -= flattening * points[i][3];
        for (std::size_t k = 0; k < forces[i].size(); ++k) {
            velocities[i][k] = 0.9 * velocities[i][k] + 0.03 * forces[i][k];
            points[i][k] += velocities[i][k];
        }
    }

    Goals const& goals;
    Points points, velocities, forces;
};

} // namespace

std::vector<McVec3f> idealGeometry(tarnex::ResidueTemplate const& residue) {
    Goals const goals = usualGoals(residue);
    for (unsigned seed = 1; seed <= 200; ++seed) {
        Relaxation relaxation(goals, residue.atoms.size(), seed);
        Points const& points = relaxation.run();
        if (!relaxation.isGood()) continue;
        std::vector<McVec3f> coords;
        for (std::size_t i = 0; i < points.size(); ++i) {
            bool const isThere = !residue.atoms[i].optional;
            auto const coordinate = [&](std::size_t k) { return isThere ? static_cast<float>(points[i][k]) : 0.0F; };
            coords.emplace_back(coordinate(0), coordinate(1), coordinate(2));
        }
        return coords;
    }
    throw std::runtime_error("no geometry for residue " + residue.name);
}

} // namespace residuedb
