// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/marquardt/Marquardt.h"
#include "methods/marquardt/MarquardtSolver.h"
#include "support/TestSupport.h"

#include <cfloat>
#include <cmath>
#include <random>

Q_DECLARE_METATYPE(dip::ParVector)

using namespace dip;
using namespace dip::test;

namespace {

// The solver the tests step, kept from one call to the next as a fit's caller keeps it.
FourierSolver& solver()
{
    static FourierSolver s;
    return s;
}

// A light curve and parameters in solver order (A1..A5, C, W, Xo).
struct Problem {
    FitArray x, y, sig;
    Integer n = 0;
    ParVector a;
};

ParVector parameters(double a1, double a2, double a3, double a4, double a5, double c, double w, double xo)
{
    ParVector a;
    a(1) = a1;
    a(2) = a2;
    a(3) = a3;
    a(4) = a4;
    a(5) = a5;
    a(6) = c;
    a(7) = w;
    a(8) = xo;
    return a;
}

// The model written out once more, straight from its formula, for the checks below.
double modelValue(double x, const ParVector& a)
{
    const double amplitudes[5] = {a(1), a(2), a(3), a(4), a(5)};
    return fourierMag(x, a(8), a(6), a(7), amplitudes);
}

// n points evenly over [t0, t1] of the model for `truth`, plus noise of the given size.
Problem curve(const ParVector& truth, int n, double t0, double t1, double noise, unsigned seed)
{
    Problem p;
    const double amplitudes[5] = {truth(1), truth(2), truth(3), truth(4), truth(5)};
    const Points points = fourierDip(truth(8), truth(6), truth(7), amplitudes, n, t0, t1, noise, seed);
    p.n = static_cast<Integer>(n);
    for (int i = 1; i <= n; ++i) {
        p.x(i) = points[static_cast<std::size_t>(i - 1)].first;
        p.y(i) = points[static_cast<std::size_t>(i - 1)].second;
        p.sig(i) = 0.01;
    }
    return p;
}

ParList inOrder()
{
    ParList l;
    for (int j = 1; j <= 8; ++j)
        l(j) = static_cast<Integer>(j);
    return l;
}

// The caller's side of a fit: the variables handed to every call of MarquardtStep.
struct Fit {
    Fit(const Problem& problem, const ParVector& start) : p(problem), a(start) {}

    Problem p;
    ParVector a;
    ParList lista = inOrder();
    ParMatrix covar, alpha;
    double chisq = 0;
    double alamda = -1;

    void step() { solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda); }
};

const ParVector truthA = parameters(0.3, 0.1, 0.04, 0.01, 0.003, 12.5, 30, 2451234.5678);

// The coefficient sums by the plainest loops: the bits the solver must reproduce.
void plainCoefficients(const Problem& p, const ParVector& a, const ParList& lista, int mfit, double alpha[9][9],
                       double beta[9], double& chisq)
{
    for (int j = 1; j <= 8; ++j) {
        beta[j] = 0;
        for (int k = 1; k <= 8; ++k)
            alpha[j][k] = 0;
    }
    chisq = 0;
    for (int i = 1; i <= p.n; ++i) {
        const double x = p.x(i);
        const double u = a(7) * (x - a(8));
        double ymod = a(6);
        double s = 0;
        double dyda[9];
        for (int k = 1; k <= 5; ++k) {
            dyda[k] = std::cos(k * u) - 1;
            ymod = ymod + a(k) * dyda[k];
            s = s + k * a(k) * std::sin(k * u);
        }
        dyda[6] = 1;
        dyda[7] = -s * (x - a(8));
        dyda[8] = s * a(7);
        const double sig2i = 1 / (p.sig(i) * p.sig(i));
        const double dy = p.y(i) - ymod;
        for (int j = 1; j <= mfit; ++j) {
            const double wt = dyda[lista(j)] * sig2i;
            for (int k = 1; k <= j; ++k)
                alpha[j][k] = alpha[j][k] + wt * dyda[lista(k)];
            beta[j] = beta[j] + dy * wt;
        }
        chisq = chisq + dy * dy * sig2i;
    }
}

double plainChisq(const Problem& p, const ParVector& a)
{
    double alpha[9][9], beta[9], chisq = 0;
    plainCoefficients(p, a, inOrder(), 8, alpha, beta, chisq);
    return chisq;
}

// The inverse of the leading n x n block in extended precision, by Gauss-Jordan elimination
// with partial pivoting: a second, independent computation.
void extendedInverse(const ParMatrix& m, int n, long double inv[9][9])
{
    long double w[9][18] = {};
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j)
            w[i][j] = m(i, j);
        w[i][n + i] = 1;
    }
    for (int c = 1; c <= n; ++c) {
        int pivot = c;
        for (int r = c + 1; r <= n; ++r)
            if (std::fabs(w[r][c]) > std::fabs(w[pivot][c]))
                pivot = r;
        for (int j = 1; j <= 2 * n; ++j)
            std::swap(w[c][j], w[pivot][j]);
        const long double d = w[c][c];
        for (int j = 1; j <= 2 * n; ++j)
            w[c][j] /= d;
        for (int r = 1; r <= n; ++r) {
            if (r == c)
                continue;
            const long double f = w[r][c];
            for (int j = 1; j <= 2 * n; ++j)
                w[r][j] -= f * w[c][j];
        }
    }
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j)
            inv[i][j] = w[i][n + j];
}

// Runs a fit the way the Fourier window does: a start call, steps until one lowers chi-square
// by less than ten per cent (at most 501), and the covariance call. Returns the loop calls.
int runSchedule(Problem& p, ParVector& a, ParMatrix& covar, ParMatrix& alpha, double& chisq, double& alamda)
{
    ParList lista = inOrder();
    alamda = -1;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    int c = 0;
    double old = 0;
    do {
        ++c;
        old = chisq;
        solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    } while (!((chisq < old && chisq > 0.9 * old) || c > 500));
    double finish = 0;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, finish);
    return c;
}

bool sameVector(const ParVector& a, const ParVector& b)
{
    for (int j = 0; j <= 8; ++j)
        if (std::memcmp(&a(j), &b(j), sizeof(double)) != 0)
            return false;
    return true;
}

} // namespace

class MarquardtTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void modelValueAndDerivatives_data();
    void modelValueAndDerivatives();
    void modelPinnedAtXo();
    void coefficientsAsPlainLoops_data();
    void coefficientsAsPlainLoops();
    void coefficientsAfterNewTimes();
    void coefficientsPointBeyond1000();
    void overflowRaises_data();
    void overflowRaises();
    void startSetsDampingBeforeTheFirstTrial();
    void dampingAfterAcceptedTrial();
    void dampingAfterRejectedTrial();
    void rejectedTrialReturnsPreviousChisq();
    void equalChisqIsAccepted();
    void allAmplitudesZeroIsSingular();
    void singularOnEveryCallWhileAmplitudesStayZero();
    void finishingCallLeavesParametersAndGivesInverse();
    void dampingUnderflowsToZeroAndFinishes();
    void listaInOrderPassesSilently();
    void listaWithRepeatIsImproper();
    void listaNotCoveringIsImproper();
    void gaussJordanSolvesAndInverts();
    void gaussJordanLastEqualPivotWins();
    void gaussJordanTakesZeroPivotAndStops();
    void gaussJordanHundredUnknownsAtMost();
    void sortCovarianceInOrderKeepsMatrix();
    void sortCovarianceSpreadsFittedBlock();
    void syntheticDipRecoversXo();
};

void MarquardtTest::modelValueAndDerivatives_data()
{
    QTest::addColumn<double>("x");
    QTest::newRow("at Xo") << 2451234.5678;
    QTest::newRow("before") << 2451234.51;
    QTest::newRow("after") << 2451234.6321;
    QTest::newRow("far") << 2451236.0;
}

void MarquardtTest::modelValueAndDerivatives()
{
    QFETCH(double, x);
    const ParVector a = parameters(0.3, -0.1, 0.04, 0.02, -0.003, 12.5, 30, 2451234.5678);
    double y = 0;
    ParVector dyda;
    FourierModel(x, a, y, dyda, 8);
    QCOMPARE(y, modelValue(x, a));
    QCOMPARE(dyda(6), 1.0);
    // Each derivative against a central difference of the model.
    const double steps[9] = {0, 1e-4, 1e-4, 1e-4, 1e-4, 1e-4, 1e-4, 1e-5, 1e-5};
    for (int j = 1; j <= 8; ++j) {
        ParVector up = a, down = a;
        up(j) += steps[j];
        down(j) -= steps[j];
        const double numeric = (modelValue(x, up) - modelValue(x, down)) / (2 * steps[j]);
        QVERIFY2(std::abs(dyda(j) - numeric) <= 1e-4 * std::max(1.0, std::abs(numeric)),
                 qPrintable(QStringLiteral("dyda(%1) = %2, numeric %3").arg(j).arg(dyda(j)).arg(numeric)));
    }
}

void MarquardtTest::modelPinnedAtXo()
{
    // At x = Xo every harmonic term vanishes, whatever the amplitudes: y = C.
    const ParVector a = parameters(7, -3, 2, 11, 5, -12.25, 41, 2451234.5);
    double y = 0;
    ParVector dyda;
    FourierModel(2451234.5, a, y, dyda, 8);
    QCOMPARE(y, -12.25);
    for (int k = 1; k <= 5; ++k)
        QCOMPARE(dyda(k), 0.0);
    QCOMPARE(dyda(7), 0.0);
    QCOMPARE(dyda(8), 0.0);
}

void MarquardtTest::coefficientsAsPlainLoops_data()
{
    QTest::addColumn<int>("mfit");
    QTest::addColumn<QString>("order");
    QTest::newRow("all eight in order") << 8 << "12345678";
    QTest::newRow("all eight permuted") << 8 << "81726354";
    QTest::newRow("five fitted") << 5 << "86712345";
    QTest::newRow("one fitted") << 1 << "81234567";
}

void MarquardtTest::coefficientsAsPlainLoops()
{
    QFETCH(int, mfit);
    QFETCH(QString, order);
    ParList lista;
    for (int j = 1; j <= 8; ++j)
        lista(j) = static_cast<Integer>(order.at(j - 1).digitValue());
    Problem p = curve(truthA, 777, 2451234.45, 2451234.69, 0.02, 7);
    ParVector a = parameters(0.25, 0.12, 0.05, 0.012, 0.002, 12.45, 29, 2451234.566);

    // The same parameters twice (the second time the cosines are reused), then a change of
    // amplitude only, then of W: every time the plain loops' bits.
    for (int round = 0; round < 4; ++round) {
        if (round == 2)
            a(2) = 0.13;
        if (round == 3)
            a(7) = 29.5;
        ParMatrix alpha, beta;
        double chisq = -1;
        solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, lista, static_cast<Integer>(mfit), alpha, beta, 8, chisq);
        double refAlpha[9][9], refBeta[9], refChisq = 0;
        plainCoefficients(p, a, lista, mfit, refAlpha, refBeta, refChisq);
        QCOMPARE(chisq, refChisq);
        for (int j = 1; j <= mfit; ++j) {
            QCOMPARE(beta(j, 1), refBeta[j]);
            for (int k = 1; k <= j; ++k) {
                QCOMPARE(alpha(j, k), refAlpha[j][k]);
                QCOMPARE(alpha(k, j), refAlpha[j][k]);
            }
        }
    }
}

void MarquardtTest::coefficientsAfterNewTimes()
{
    // Same W and Xo, other times: nothing of the earlier points may be reused.
    const ParVector a = parameters(0.25, 0.12, 0.05, 0.012, 0.002, 12.45, 29, 2451234.566);
    Problem p = curve(truthA, 300, 2451234.45, 2451234.69, 0.02, 3);
    ParMatrix alpha, beta;
    double chisq = 0;
    solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, inOrder(), 8, alpha, beta, 8, chisq);
    p.x(150) += 0.001;
    solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, inOrder(), 8, alpha, beta, 8, chisq);
    QCOMPARE(chisq, plainChisq(p, a));
    p.n = 299;
    solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, inOrder(), 8, alpha, beta, 8, chisq);
    QCOMPARE(chisq, plainChisq(p, a));
}

void MarquardtTest::coefficientsPointBeyond1000()
{
    Problem p = curve(truthA, 10, 2451234.45, 2451234.69, 0, 1);
    ParMatrix alpha, beta;
    double chisq = 0;
    const ParList lista = inOrder();
    DIP_EXPECT_RUNTIME_ERROR(solver().coefficients(p.x, p.y, p.sig, 1001, truthA, 8, lista, 8, alpha, beta, 8, chisq),
                             9);
}

void MarquardtTest::overflowRaises_data()
{
    QTest::addColumn<ParVector>("a");
    QTest::newRow("W (x - Xo) too large") << parameters(0.3, 0.1, 0, 0, 0, 12, 1e308, 2451230);
    QTest::newRow("amplitude too large") << parameters(1e308, 1e308, 0, 0, 0, 12, 30, 2451234.5);
    QTest::newRow("chi-square too large") << parameters(0.3, 0.1, 0, 0, 0, 1e160, 30, 2451234.5);
}

void MarquardtTest::overflowRaises()
{
    // A value too large for a double ends the computation with "Overflow", never inf or NaN.
    QFETCH(ParVector, a);
    Problem p = curve(truthA, 20, 2451234.45, 2451234.69, 0, 1);
    ParMatrix alpha, beta;
    double chisq = 0;
    const ParList lista = inOrder();
    DIP_EXPECT_RUNTIME_ERROR(solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, lista, 8, alpha, beta, 8, chisq), 6);
}

void MarquardtTest::startSetsDampingBeforeTheFirstTrial()
{
    // The first trial is the step of (alpha + 0.001 diag(alpha)) da = beta from the start values.
    Fit f(curve(truthA, 200, 2451234.45, 2451234.69, 0.01, 11),
          parameters(0.28, 0.11, 0.03, 0.01, 0.004, 12.48, 30.5, 2451234.569));
    const ParVector start = f.a;
    ParMatrix alpha0, beta0;
    double chisq0 = 0;
    solver().coefficients(f.p.x, f.p.y, f.p.sig, f.p.n, start, 8, inOrder(), 8, alpha0, beta0, 8, chisq0);

    MessageRecorder messages;
    f.step();
    QVERIFY(messages.messages().isEmpty());

    ParMatrix damped = alpha0;
    for (int j = 1; j <= 8; ++j)
        damped(j, j) = alpha0(j, j) * 1.001;
    long double inv[9][9];
    extendedInverse(damped, 8, inv);
    const ParVector& trial = solver().ATry;
    for (int j = 1; j <= 8; ++j) {
        long double step = 0;
        for (int k = 1; k <= 8; ++k)
            step += inv[j][k] * beta0(k, 1);
        DIP_COMPARE_REL(trial(j) - start(j), static_cast<double>(step), 1e-6);
    }
}

void MarquardtTest::dampingAfterAcceptedTrial()
{
    Fit f{curve(truthA, 200, 2451234.45, 2451234.69, 0.01, 11),
          parameters(0.28, 0.11, 0.03, 0.01, 0.004, 12.48, 30.5, 2451234.569)};
    const double before = plainChisq(f.p, f.a);
    f.step();
    QVERIFY(f.chisq < before);
    QCOMPARE(f.alamda, 0.1 * 0.001);
    DIP_COMPARE_REL(f.alamda, 0.0001, 1e-15);
    QVERIFY(sameVector(f.a, solver().ATry));
    QCOMPARE(solver().OChisq, f.chisq);
    QCOMPARE(f.chisq, plainChisq(f.p, f.a));
}

// A start far off in W: the nearly undamped first step overshoots (the tests check it does).
Fit overshootingStart()
{
    return {curve(truthA, 200, 2451234.45, 2451234.69, 0.01, 11),
            parameters(0.3, 0.1, 0.04, 0.01, 0.003, 12.5, 5, 2451234.5678)};
}

void MarquardtTest::dampingAfterRejectedTrial()
{
    Fit f = overshootingStart();
    const ParVector start = f.a;
    const double before = plainChisq(f.p, f.a);
    f.step();
    QVERIFY(plainChisq(f.p, solver().ATry) > before);
    QCOMPARE(f.alamda, 10 * 0.001);
    DIP_COMPARE_REL(f.alamda, 0.01, 1e-15);
    QVERIFY(sameVector(f.a, start));
}

void MarquardtTest::rejectedTrialReturnsPreviousChisq()
{
    Fit f = overshootingStart();
    const double before = plainChisq(f.p, f.a);
    f.step();
    const double trial = plainChisq(f.p, solver().ATry);
    QVERIFY(trial != before);
    QCOMPARE(f.chisq, before);
    QCOMPARE(solver().OChisq, before);

    // The second trial, with ten times the damping, is refused too: the same chi-square again.
    f.step();
    QVERIFY(plainChisq(f.p, solver().ATry) > before);
    QCOMPARE(f.alamda, 10 * (10 * 0.001));
    QCOMPARE(f.chisq, before);
}

void MarquardtTest::equalChisqIsAccepted()
{
    // Points exactly on the model: chi-square 0, no step, and the same 0 again is accepted.
    Problem p = curve(truthA, 150, 2451234.45, 2451234.69, 0, 1);
    ParVector a = truthA;
    QCOMPARE(plainChisq(p, a), 0.0);
    ParList lista = inOrder();
    ParMatrix covar, alpha;
    double chisq = -1, alamda = -1;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    QCOMPARE(chisq, 0.0);
    QCOMPARE(alamda, 0.1 * 0.001);
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    QCOMPARE(alamda, 0.1 * (0.1 * 0.001));
    QVERIFY(sameVector(a, truthA));
}

void MarquardtTest::allAmplitudesZeroIsSingular()
{
    // Without amplitudes the model does not depend on W or Xo: their rows and columns of the
    // curvature matrix are zero.
    Problem p = curve(truthA, 100, 2451234.45, 2451234.69, 0.01, 5);
    ParVector a = parameters(0, 0, 0, 0, 0, 12.4, 30, 2451234.57);
    ParMatrix alpha, beta;
    double chisq = 0;
    solver().coefficients(p.x, p.y, p.sig, p.n, a, 8, inOrder(), 8, alpha, beta, 8, chisq);
    for (int k = 1; k <= 8; ++k) {
        QCOMPARE(alpha(7, k), 0.0);
        QCOMPARE(alpha(8, k), 0.0);
    }

    MessageRecorder messages;
    ParList lista = inOrder();
    ParMatrix covar, alpha2;
    double chisq2 = 0, alamda = -1;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha2, 8, chisq2, alamda);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Singular matrix 2")});
    QCOMPARE(messages.titles(), QStringList{QStringLiteral("Dipscope")});
    // The step is made from what the elimination left and judged as any other: taken when its
    // chi-square, computed here from the trial parameters, is not above the start's.
    const ParVector trial = solver().ATry;
    const bool taken = plainChisq(p, trial) <= plainChisq(p, parameters(0, 0, 0, 0, 0, 12.4, 30, 2451234.57));
    QCOMPARE(alamda, taken ? 0.1 * 0.001 : 10 * 0.001);
    QVERIFY(sameVector(a, taken ? trial : parameters(0, 0, 0, 0, 0, 12.4, 30, 2451234.57)));
}

void MarquardtTest::singularOnEveryCallWhileAmplitudesStayZero()
{
    // A flat curve at C with no amplitudes: no gradient, so the amplitudes stay 0 and every
    // call, the finishing one included, meets the singular matrix.
    Problem p;
    p.n = 60;
    for (int i = 1; i <= p.n; ++i) {
        p.x(i) = 2451234.5 + 0.003 * i;
        p.y(i) = 12.25;
        p.sig(i) = 0.01;
    }
    ParVector a = parameters(0, 0, 0, 0, 0, 12.25, 25, 2451234.6);
    MessageRecorder messages;
    ParMatrix covar, alpha;
    double chisq = 0, alamda = 0;
    const int loop = runSchedule(p, a, covar, alpha, chisq, alamda);
    QCOMPARE(loop, 501);
    QCOMPARE(messages.messages().size(), 1 + 501 + 1);
    QCOMPARE(messages.messages().count(QStringLiteral("Singular matrix 2")), 503);
    QCOMPARE(chisq, 0.0);
    QVERIFY(sameVector(a, parameters(0, 0, 0, 0, 0, 12.25, 25, 2451234.6)));
}

void MarquardtTest::finishingCallLeavesParametersAndGivesInverse()
{
    // A well-conditioned curvature: a wide, well-sampled dip with two strong harmonics.
    const ParVector truth = parameters(0.4, 0.15, 0.05, 0.02, 0.01, 12.0, 12, 2451234.5);
    Problem p = curve(truth, 400, 2451234.25, 2451234.75, 0.01, 17);
    ParVector a = parameters(0.38, 0.16, 0.05, 0.02, 0.01, 12.01, 12.1, 2451234.501);
    ParList lista = inOrder();
    ParMatrix covar, alpha;
    double chisq = 0, alamda = -1;
    for (int call = 0; call < 4; ++call)
        solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    const ParVector before = a;
    const ParMatrix alphaBefore = alpha;
    const double chisqBefore = chisq;
    const double alamdaBefore = alamda;

    MessageRecorder messages;
    double finish = 0;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, finish);
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(sameVector(a, before));
    QCOMPARE(chisq, chisqBefore);
    QCOMPARE(finish, 0.0);
    QCOMPARE(alamda, alamdaBefore);

    long double inv[9][9];
    extendedInverse(alphaBefore, 8, inv);
    for (int i = 1; i <= 8; ++i) {
        for (int j = 1; j <= 8; ++j) {
            QCOMPARE(alpha(i, j), alphaBefore(i, j));
            // Relative to the scale of the element's row and column.
            const double scale = std::sqrt(static_cast<double>(inv[i][i] * inv[j][j]));
            const double diff = std::abs(covar(i, j) - static_cast<double>(inv[i][j]));
            QVERIFY2(diff <= 1e-12 * scale, qPrintable(QStringLiteral("covar(%1,%2) = %3, inverse %4")
                                                           .arg(i)
                                                           .arg(j)
                                                           .arg(covar(i, j), 0, 'g', 17)
                                                           .arg(static_cast<double>(inv[i][j]), 0, 'g', 17)));
        }
    }
    // And the product with the curvature matrix is the identity.
    for (int i = 1; i <= 8; ++i) {
        for (int j = 1; j <= 8; ++j) {
            long double sum = 0;
            for (int k = 1; k <= 8; ++k)
                sum += static_cast<long double>(covar(i, k)) * alphaBefore(k, j);
            QVERIFY(std::fabs(static_cast<double>(sum) - (i == j ? 1.0 : 0.0)) < 1e-9);
        }
    }
}

void MarquardtTest::dampingUnderflowsToZeroAndFinishes()
{
    // Every step on points exactly on the model is accepted with an unchanged chi-square, so
    // the damping falls by ten each time, through the subnormal numbers down to exactly 0.
    int expectedAccepted = 0;
    bool subnormalMet = false;
    for (double lambda = 0.001; lambda != 0; lambda = 0.1 * lambda) {
        ++expectedAccepted;
        subnormalMet = subnormalMet || (lambda > 0 && lambda < DBL_MIN);
    }
    QVERIFY(subnormalMet);
    QVERIFY(expectedAccepted > 300 && expectedAccepted < 501);

    Problem p = curve(truthA, 120, 2451234.45, 2451234.69, 0, 1);
    ParVector a = truthA;
    ParList lista = inOrder();
    ParMatrix covar, alpha;
    double chisq = 0, alamda = -1;
    int calls = 0;
    bool sawSubnormal = false;
    while (alamda != 0) {
        solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
        ++calls;
        sawSubnormal = sawSubnormal || (alamda > 0 && alamda < DBL_MIN);
        QVERIFY(calls <= 501);
    }
    QVERIFY(sawSubnormal);
    QCOMPARE(calls, expectedAccepted);
    QVERIFY(!std::signbit(alamda));

    // From now on a step is the finishing call: no new coefficients, the covariance in covar.
    const long long evaluations = solver().counts().evaluations;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    QCOMPARE(solver().counts().evaluations, evaluations);
    QVERIFY(sameVector(a, truthA));
    QCOMPARE(alamda, 0.0);
    long double inv[9][9];
    extendedInverse(alpha, 8, inv);
    DIP_COMPARE_REL(covar(8, 8), static_cast<double>(inv[8][8]), 1e-6);
}

void MarquardtTest::listaInOrderPassesSilently()
{
    Fit f(curve(truthA, 50, 2451234.45, 2451234.69, 0.01, 2), truthA);
    MessageRecorder messages;
    f.step();
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(f.alamda > 0);
    for (int j = 1; j <= 8; ++j)
        QCOMPARE(f.lista(j), static_cast<Integer>(j));
}

void MarquardtTest::listaWithRepeatIsImproper()
{
    Problem p = curve(truthA, 50, 2451234.45, 2451234.69, 0.01, 2);
    ParVector a = truthA;
    MessageRecorder messages;
    ParList lista = inOrder();
    lista(2) = 1;
    ParMatrix covar, alpha;
    double chisq = 0, alamda = -1;
    const long long evaluations = solver().counts().evaluations;
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Improper permutation in LISTA")});
    QCOMPARE(alamda, -1.0);
    QVERIFY(sameVector(a, truthA));
    QCOMPARE(solver().counts().evaluations, evaluations);
    // Still negative, so the next call tries the start again and says so again.
    solver().step(p.x, p.y, p.sig, p.n, a, 8, lista, 8, covar, alpha, 8, chisq, alamda);
    QCOMPARE(messages.messages().size(), 2);
    QCOMPARE(alamda, -1.0);
}

void MarquardtTest::listaNotCoveringIsImproper()
{
    // Three parameters, two fitted, one of them not a parameter at all: the list cannot be
    // completed to cover 1..3.
    Problem p = curve(truthA, 50, 2451234.45, 2451234.69, 0.01, 2);
    ParVector a = truthA;
    MessageRecorder messages;
    ParList lista;
    lista(1) = 1;
    lista(2) = 0;
    ParMatrix covar, alpha;
    double chisq = 0, alamda = -0.5;
    solver().step(p.x, p.y, p.sig, p.n, a, 3, lista, 2, covar, alpha, 8, chisq, alamda);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Improper permutation in LISTA")});
    QCOMPARE(alamda, -0.5);
    QCOMPARE(lista(3), Integer(2));
    QCOMPARE(lista(4), Integer(3));
}

void MarquardtTest::gaussJordanSolvesAndInverts()
{
    // A known 4 x 4 system with two right-hand sides.
    const double m[4][4] = {{4, -2, 1, 3}, {3, 6, -4, 2}, {2, 1, 8, -5}, {1, 2, 3, 9}};
    const double x1[4] = {1, -2, 3, 0.5};
    const double x2[4] = {-1, 0.25, 2, 4};
    ParMatrix a, b;
    for (int i = 0; i < 4; ++i) {
        double r1 = 0, r2 = 0;
        for (int j = 0; j < 4; ++j) {
            a(i + 1, j + 1) = m[i][j];
            r1 += m[i][j] * x1[j];
            r2 += m[i][j] * x2[j];
        }
        b(i + 1, 1) = r1;
        b(i + 1, 2) = r2;
    }
    const ParMatrix original = a;
    MessageRecorder messages;
    GaussJordan(a, 4, 8, b, 2, 8);
    QVERIFY(messages.messages().isEmpty());
    for (int i = 1; i <= 4; ++i) {
        QVERIFY(std::abs(b(i, 1) - x1[i - 1]) < 1e-13);
        QVERIFY(std::abs(b(i, 2) - x2[i - 1]) < 1e-13);
    }
    for (int i = 1; i <= 4; ++i) {
        for (int j = 1; j <= 4; ++j) {
            double sum = 0;
            for (int k = 1; k <= 4; ++k)
                sum += original(i, k) * a(k, j);
            QVERIFY(std::abs(sum - (i == j ? 1 : 0)) < 1e-14);
        }
    }
}

void MarquardtTest::gaussJordanLastEqualPivotWins()
{
    // All four elements of the singular matrix [[1, 1], [1, 1]] are equal: the last one met,
    // (2, 2), is the first pivot. Row 1 is then reduced against row 2 and the second pass
    // meets the zero pivot.
    ParMatrix a, b;
    a(1, 1) = a(1, 2) = a(2, 1) = a(2, 2) = 1;
    b(1, 1) = 3;
    b(2, 1) = 5;
    MessageRecorder messages;
    GaussJordan(a, 2, 8, b, 1, 8);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Singular matrix 2")});
    QCOMPARE(b(1, 1), 3.0 - 5.0);
    QCOMPARE(b(2, 1), 5.0);
    QCOMPARE(a(1, 1), 0.0);
    QCOMPARE(a(1, 2), -1.0);
}

void MarquardtTest::gaussJordanTakesZeroPivotAndStops()
{
    // Only a(3, 3) is not zero: it is the first pivot; in the second pass every candidate is
    // 0 and, the test being greater-or-equal, the last of them is taken and found zero.
    ParMatrix a, b;
    a(3, 3) = 5;
    b(1, 1) = 1;
    b(2, 1) = 2;
    b(3, 1) = 10;
    MessageRecorder messages;
    GaussJordan(a, 3, 8, b, 1, 8);
    QCOMPARE(messages.messages(), QStringList{QStringLiteral("Singular matrix 2")});
    QCOMPARE(a(3, 3), 1.0 / 5.0);
    QCOMPARE(b(3, 1), 10.0 * (1.0 / 5.0));
    QCOMPARE(b(1, 1), 1.0);
    QCOMPARE(b(2, 1), 2.0);
}

void MarquardtTest::gaussJordanHundredUnknownsAtMost()
{
    // The pivot bookkeeping is of fixed size; this program's matrices stop at 8 anyway.
    ParMatrix a, b;
    DIP_EXPECT_RUNTIME_ERROR(GaussJordan(a, 9, 9, b, 1, 1), 9);
}

void MarquardtTest::sortCovarianceInOrderKeepsMatrix()
{
    ParMatrix c;
    for (int i = 1; i <= 8; ++i)
        for (int j = 1; j <= 8; ++j)
            c(i, j) = (i <= j) ? 10 * i + j : -999; // the lower triangle is not read
    ParMatrix sorted = c;
    SortCovariance(sorted, 8, 8, inOrder(), 8);
    for (int i = 1; i <= 8; ++i)
        for (int j = 1; j <= 8; ++j)
            QCOMPARE(sorted(i, j), double(10 * std::min(i, j) + std::max(i, j)));
}

void MarquardtTest::sortCovarianceSpreadsFittedBlock()
{
    // Parameters 3 and 1 fitted, in that order, out of 3: their 2 x 2 covariance goes to the
    // places (3, 3), (3, 1), (1, 3), (1, 1); parameter 2 gets zeros.
    ParMatrix c;
    c(1, 1) = 4;
    c(1, 2) = 0.5;
    c(2, 1) = 0.5;
    c(2, 2) = 9;
    c(3, 3) = 77;
    ParList lista;
    lista(1) = 3;
    lista(2) = 1;
    lista(3) = 2;
    SortCovariance(c, 8, 3, lista, 2);
    QCOMPARE(c(3, 3), 4.0);
    QCOMPARE(c(1, 1), 9.0);
    QCOMPARE(c(1, 3), 0.5);
    QCOMPARE(c(3, 1), 0.5);
    for (int k = 1; k <= 3; ++k) {
        QCOMPARE(c(2, k), 0.0);
        QCOMPARE(c(k, 2), 0.0);
    }
}

void MarquardtTest::syntheticDipRecoversXo()
{
    // Points generated from the model itself with a known Xo, started away from it.
    Problem p = curve(truthA, 400, 2451234.46, 2451234.68, 0, 1);
    ParVector a = parameters(0.25, 0.12, 0.05, 0.012, 0.002, 12.45, 29, 2451234.566);
    ParMatrix covar, alpha;
    double chisq = 0, alamda = 0;
    MessageRecorder messages;
    runSchedule(p, a, covar, alpha, chisq, alamda);
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(std::abs(a(8) - truthA(8)) < 1e-7);
    QVERIFY(std::abs(a(7) - truthA(7)) < 1e-4);
    QVERIFY(covar(8, 8) > 0);

    // With noise the error bar covers the true time.
    Problem noisy = curve(truthA, 400, 2451234.46, 2451234.68, 0.02, 9);
    ParVector b = parameters(0.25, 0.12, 0.05, 0.012, 0.002, 12.45, 29, 2451234.566);
    runSchedule(noisy, b, covar, alpha, chisq, alamda);
    QVERIFY(std::abs(b(8) - truthA(8)) < 4 * std::sqrt(covar(8, 8)));
    QVERIFY(std::sqrt(covar(8, 8)) < 1e-3);
}

QTEST_GUILESS_MAIN(MarquardtTest)
#include "tst_marquardt.moc"
