# SPDX-License-Identifier: MIT
"""Random portfolio problems with their least values: the independent solver.

Usage: quadratic_problems.py COUNT SEED
Prints per problem: n m, G row by row, lower, upper, A row by row, least, most (none: +-1e300), the least value of x'Gx / 2.
Solved by an interior-point method, then exactly on the constraints that it ends at. Not trusted: the value is printed only
when the dual function, a bound that holds for any multipliers, proves it to 1e-11.
"""
import sys

import numpy as np

NONE = 1e300


def random_problem(random):
    n = int(random.integers(2, 61))
    days = int(random.integers(n // 2 + 2, 3 * n + 10))
    factors = random.normal(size=(days, n)) * 0.015 + random.normal(size=(days, 1)) * 0.01 * random.uniform(0.2, 1.8, n)
    centred = factors - factors.mean(0)
    sample = centred.T @ centred / days
    quadratic = 0.7 * sample + 0.3 * np.eye(n) * np.trace(sample) / n
    inside = random.dirichlet(np.full(n, 3.0))  # keeps all constraints: there is a solution
    upper = np.full(n, max(inside.max() * 1.02, float(random.uniform(1.05, 6)) / n))
    rows, least, most = [np.ones(n)], [1.0], [1.0]
    groups = random.integers(0, max(2, n // 4), n)
    for group in np.unique(groups):
        members = (groups == group).astype(float)
        rows.append(members)
        least.append(-NONE)
        most.append(min(1.0, float(members @ inside) * float(random.uniform(1.01, 2))))
    if random.random() < 0.6:
        expected = random.normal(size=n) * 0.1 + 0.05
        rows.append(expected)
        least.append(float(expected @ inside) - float(random.uniform(0.001, 0.03)))
        most.append(NONE)
    return quadratic, np.zeros(n), np.minimum(upper, 1.0), np.array(rows), np.array(least), np.array(most)


def as_inequalities(lower, upper, rows, least, most):
    """(A, b, C, d): Ax = b, Cx >= d."""
    n = len(lower)
    equal = least == most
    parts = [(np.eye(n), lower), (-np.eye(n), -upper)]
    parts += [(rows[~equal & (least > -NONE)], least[~equal & (least > -NONE)])]
    parts += [(-rows[~equal & (most < NONE)], -most[~equal & (most < NONE)])]
    return rows[equal], least[equal], np.vstack([part[0] for part in parts]), np.concatenate([part[1] for part in parts])


def interior_point(quadratic, a, b, c, d):
    """Multipliers of A and C, distances from C: predictor and corrector of Mehrotra (SIAM Journal on Optimization 2, 1992)."""
    n, k, m = len(quadratic), len(b), len(d)
    x, y, z = np.full(n, 1.0 / n), np.zeros(k), np.ones(m)
    s = np.maximum(c @ x - d, 0.1)
    for _ in range(60):
        dual = quadratic @ x - a.T @ y - c.T @ z
        primal, slack, gap = a @ x - b, c @ x - s - d, s @ z / m
        if max(abs(dual).max(), abs(primal).max(), abs(slack).max()) < 1e-11 and gap < 1e-14:
            break
        system = np.block([[quadratic + c.T @ ((z / s)[:, None] * c), -a.T], [a, np.zeros((k, k))]])

        def step(target):
            right = np.concatenate([-dual - c.T @ ((z * slack + s * z - target) / s), -primal])
            found = np.linalg.solve(system, right)
            ds = c @ found[:n] + slack
            return found[:n], found[n:], (target - s * z - z * ds) / s, ds

        def reach(dz, ds):
            return min([1.0] + [0.995 * -v / w for v, w in zip(np.r_[z, s], np.r_[dz, ds]) if w < 0])

        try:
            _, _, dz, ds = step(0.0)
        except np.linalg.LinAlgError:  # so close that nothing is left to do
            break
        length = reach(dz, ds)
        centre = ((s + length * ds) @ (z + length * dz) / m / gap) ** 3
        dx, dy, dz, ds = step(centre * gap - ds * dz)
        length = reach(dz, ds)
        x, y, z, s = x + length * dx, y + length * dy, z + length * dz, s + length * ds
    return y, z, s


def solve(quadratic, lower, upper, rows, least, most):
    scale = 1 / np.mean(np.diag(quadratic))
    g = quadratic * scale
    a, b, c, d = as_inequalities(lower, upper, rows, least, most)
    y, z, s = interior_point(g, a, b, c, d)
    active = z > s
    n, held = len(g), np.vstack([a, c[active]])
    system = np.block([[g, -held.T], [held, np.zeros((len(held), len(held)))]])
    found = np.linalg.lstsq(system, np.concatenate([np.zeros(n), b, d[active]]), rcond=None)[0]
    x, polished = found[:n], np.zeros(len(d))
    polished[active] = np.maximum(found[n + len(b):], 0)
    value = x @ g @ x / 2

    def dual(y, z):
        v = a.T @ y + c.T @ z
        return b @ y + d @ z - v @ np.linalg.solve(g, v) / 2

    bound = max(dual(y, z), dual(found[n:n + len(b)], polished))
    if (c @ x - d).min() < -1e-12 or abs(a @ x - b).max() > 1e-12 or abs(value - bound) > 1e-11 * value:
        sys.exit(f"not proven: {value} {bound} {(c @ x - d).min()}")
    return value / scale


def main():
    random = np.random.default_rng(int(sys.argv[2]))
    for _ in range(int(sys.argv[1])):
        problem = random_problem(random)
        print(len(problem[0]), len(problem[3]))
        for part in problem:
            print(*(repr(float(v)) for v in np.ravel(part)))
        print(repr(float(solve(*problem))))


if __name__ == "__main__":
    main()
